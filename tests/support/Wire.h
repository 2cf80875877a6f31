// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstring>
#include <initializer_list>
#include <string>
#include <vector>

/// Messages field by field, with the alignment and padding of the protocol. Deliberately independent of the encoder,
/// which they test.
namespace wire
{

/// One field. It starts at a multiple of four bytes.
struct Field
{
    std::string bytes;
};

template <typename T>
Field raw(T value)
{
    std::string bytes(sizeof value, '\0');
    std::memcpy(&bytes[0], &value, sizeof value);
    return {bytes};
}

inline Field i32(int value)
{
    return raw(value);
}
inline Field i64(long long value)
{
    return raw(value);
}
inline Field f64(double value)
{
    return raw(value);
}
inline Field f32(float value)
{
    return raw(value);
}
inline Field flag(bool value)
{
    return {std::string(1, value ? '\1' : '\0')};
}
/// A string or text: its length in bytes, then the bytes.
inline Field text(const std::string &value)
{
    return {raw(static_cast<unsigned>(value.size())).bytes + value};
}

/// A sequence of fields.
using Fields = std::vector<Field>;

inline Fields operator+(Fields left, const Fields &right)
{
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

inline Fields texts(std::initializer_list<std::string> values)
{
    Fields fields = {i32(static_cast<int>(values.size()))};
    for (const std::string &value : values)
        fields.push_back(text(value));
    return fields;
}

/// Altitude, latitude, longitude, horizontal and vertical accuracy.
inline Fields coordinate(double altitude, double latitude, double longitude, float horizontal, float vertical)
{
    return {f64(altitude), f64(latitude), f64(longitude), f32(horizontal), f32(vertical)};
}

inline std::string message(const Fields &fields)
{
    std::string bytes;
    for (const Field &field : fields) {
        while (bytes.size() % 4 != 0)
            bytes += 'Z';
        bytes += field.bytes;
    }
    return bytes;
}

} // namespace wire
