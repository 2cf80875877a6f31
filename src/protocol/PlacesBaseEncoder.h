// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QString>

#include <cstring>
#include <memory>
#include <string>
#include <type_traits>

namespace orix_places_protocol
{

/// Appends primitives to a message in native byte order. Fields wider than a byte, and bools, start at a multiple of
/// four bytes from the start of the message; the gap before them is filled with FILL.
///
/// Everything returns true, or throws std::bad_alloc when the message outgrows what can be allocated.
class PlacesBaseEncoder
{
public:
    static constexpr char FILL = 'Z';
    static constexpr unsigned int INITIAL_CAPACITY = 750;
    static constexpr unsigned int MINIMUM_GROWTH = 200;
    /// A message never gets this long.
    static constexpr unsigned int SIZE_LIMIT = 0x7F000001;

    PlacesBaseEncoder();
    virtual ~PlacesBaseEncoder();

    /// Makes room for a field of `size` bytes and, when it is aligned, writes the fill before it.
    bool ensureBuffer(unsigned int size, bool aligned)
    {
        const unsigned int pad = aligned ? (m_length & 3U) : 0U;
        const unsigned int fill = pad ? 4U - pad : 0U;
        if (const auto needed = static_cast<unsigned long long>(size) + fill; needed > m_capacity - m_length)
            grow(needed - (m_capacity - m_length));
        for (unsigned int i = 0; i < fill; ++i)
            m_buffer[m_length++] = FILL;
        return true;
    }

    /// An integer or floating-point number as it stands in memory, an enumerator as its number, or a bool as one byte.
    template <typename T>
    bool encode(T value)
    {
        ensureBuffer(sizeof value, true);
        if constexpr (std::is_same_v<T, bool>) {
            m_buffer[m_length] = value ? 1 : 0;
        } else {
            static_assert((std::is_arithmetic_v<T> || std::is_enum_v<T>)&&(sizeof(T) == 4 || sizeof(T) == 8));
            std::memcpy(m_buffer.get() + m_length, &value, sizeof value);
        }
        m_length += static_cast<unsigned int>(sizeof value);
        return true;
    }

    bool encodeCharArray(const char *bytes, unsigned int size);
    bool encodeString(const std::string &text);
    bool encodeStringPair(const std::string &first, const std::string &second);
    /// A text as UTF-8, written straight from UTF-16; a surrogate without its partner becomes "?", as in toUtf8().
    bool encodeQString(const QString &text);

    /// The message so far, which stays the encoder's and is valid until the encoder is next used.
    bool getData(char *&data, int &length) const;
    [[nodiscard]] unsigned int capacity() const { return m_capacity; }

private:
    void grow(unsigned long long shortfall);

    std::unique_ptr<char[]> m_buffer;
    unsigned int m_capacity = INITIAL_CAPACITY;
    unsigned int m_length = 0;
};

} // namespace orix_places_protocol
