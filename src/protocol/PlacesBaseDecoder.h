// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QString>

#include <cstring>
#include <memory>
#include <string>
#include <type_traits>

struct _msgserver_data;

namespace orix_places_protocol
{

/// Reads the fields that PlacesBaseEncoder writes. Each function returns false when the message ends within the field
/// or the padding before it is wrong; later reads are then undefined. The target is then unchanged; of several targets,
/// those before the error are set.
class PlacesBaseDecoder
{
public:
    /// A decoder without a message.
    PlacesBaseDecoder() = default;
    /// Decodes a copy of `data`; null for no message.
    PlacesBaseDecoder(const char *data, unsigned int length);
    /// Decodes a message in place, which must outlive the decoder; null for no message.
    explicit PlacesBaseDecoder(const _msgserver_data *message);
    PlacesBaseDecoder(const PlacesBaseDecoder &) = delete;
    virtual ~PlacesBaseDecoder();
    /// Moves the message from `other`.
    PlacesBaseDecoder &operator=(PlacesBaseDecoder &other);

    /// Checks that a field of `size` bytes can be read and skips the padding before it. At the end of the message even
    /// an empty field fails.
    bool verifyBuffer(unsigned int size, bool aligned);
    /// True at the end of the message.
    [[nodiscard]] bool testBuffer() const { return m_cursor == m_end; }
    /// Number of bytes not read yet.
    [[nodiscard]] std::size_t remaining() const { return static_cast<std::size_t>(m_end - m_cursor); }

    /// A number in native representation, an enumerator as its number, or a bool as one byte, where any value but 0 is
    /// true.
    template <typename T>
    bool decode(T &value)
    {
        if (!verifyBuffer(sizeof value, true))
            return false;
        if constexpr (std::is_same_v<T, bool>) {
            value = *m_cursor != 0;
        } else {
            static_assert((std::is_arithmetic_v<T> || std::is_enum_v<T>)&&(sizeof(T) == 4 || sizeof(T) == 8));
            std::memcpy(&value, m_cursor, sizeof value);
        }
        m_cursor += sizeof value;
        return true;
    }

    /// Sets `out` to `size` bytes within the message.
    bool decodeCharArray(const char *&out, unsigned int size);
    bool decodeString(std::string &text);
    bool decodeStringPair(std::string &first, std::string &second);
    /// A UTF-8 text; an empty one gives a null text.
    bool decodeQString(QString &text);
    bool decodeLatLon(double &first, double &second);
    bool decodeCoordinate(double &first, double &second, double &third, float &fourth, float &fifth);

protected:
    /// A saved position in the message.
    using Position = const char *;
    [[nodiscard]] Position position() const { return m_cursor; }
    void goTo(Position position) { m_cursor = position; }

private:
    /// Reads a length and that many bytes. `bytes` is null when the length is 0.
    bool decodeCounted(const char *&bytes, unsigned int &size);

    std::unique_ptr<char[]> m_owned;
    const char *m_start = nullptr;
    const char *m_end = nullptr;
    const char *m_cursor = nullptr;
};

inline bool PlacesBaseDecoder::verifyBuffer(unsigned int size, bool aligned)
{
    const std::size_t left = remaining();
    if (left < 1)
        return false;
    const std::size_t pad = aligned ? static_cast<std::size_t>(m_cursor - m_start) % 4 : 0;
    const std::size_t fill = pad ? 4 - pad : 0;
    if (size > left || fill > left - size)
        return false;
    for (std::size_t i = 0; i < fill; ++i) {
        if (*m_cursor != 'Z')
            return false;
        ++m_cursor;
    }
    return true;
}

} // namespace orix_places_protocol
