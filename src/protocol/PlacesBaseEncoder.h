// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QString>

#include <cstring>
#include <memory>
#include <string>
#include <type_traits>

namespace orix_places_protocol
{

/// Appends primitives to a message in native byte order. Bools and fields wider than a byte are aligned to four bytes
/// from the start of the message; the padding consists of FILL.
///
/// All functions return true, or throw std::bad_alloc.
class PlacesBaseEncoder
{
public:
    static constexpr char FILL = 'Z';
    static constexpr unsigned int INITIAL_CAPACITY = 750;
    static constexpr unsigned int MINIMUM_GROWTH = 200;
    /// Maximum length of a message, exclusive.
    static constexpr unsigned int SIZE_LIMIT = 0x7F000001;

    PlacesBaseEncoder();
    virtual ~PlacesBaseEncoder();

    /// Reserves a field of `size` bytes and writes the padding before an aligned one.
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

    /// A number in native representation, an enumerator as its number, or a bool as one byte.
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

    /// The number of entries of a list: 4 bytes, however wide the list counts.
    template <typename T>
    bool encodeCount(T count)
    {
        return encode(static_cast<int>(count));
    }

    bool encodeCharArray(const char *bytes, unsigned int size);
    bool encodeString(const std::string &text);
    bool encodeStringPair(const std::string &first, const std::string &second);
    /// A text in UTF-8, converted directly from UTF-16; an unpaired surrogate becomes "?", as in toUtf8().
    bool encodeQString(const QString &text);

    /// The message so far. Owned by the encoder, and valid until its next use.
    bool getData(char *&data, int &length) const;
    [[nodiscard]] unsigned int capacity() const { return m_capacity; }

private:
    void grow(unsigned long long shortfall);

    std::unique_ptr<char[]> m_buffer;
    unsigned int m_capacity = INITIAL_CAPACITY;
    unsigned int m_length = 0;
};

} // namespace orix_places_protocol
