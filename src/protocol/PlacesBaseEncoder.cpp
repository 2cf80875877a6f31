// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "protocol/PlacesBaseEncoder.h"

#include "protocol/Utf8.h"

#include <algorithm>
#include <new>

namespace orix_places_protocol
{

PlacesBaseEncoder::PlacesBaseEncoder()
    : m_buffer(new char[INITIAL_CAPACITY])
{}

PlacesBaseEncoder::~PlacesBaseEncoder() = default;

void PlacesBaseEncoder::grow(unsigned long long shortfall)
{
    const unsigned long long capacity = m_capacity + std::max<unsigned long long>(shortfall, MINIMUM_GROWTH);
    if (capacity >= SIZE_LIMIT)
        throw std::bad_alloc();
    std::unique_ptr<char[]> larger(new char[capacity]);
    std::memcpy(larger.get(), m_buffer.get(), m_length);
    m_buffer = std::move(larger);
    m_capacity = static_cast<unsigned int>(capacity);
}

bool PlacesBaseEncoder::encodeCharArray(const char *bytes, unsigned int size)
{
    ensureBuffer(size, false);
    if (size > 0)
        std::memcpy(m_buffer.get() + m_length, bytes, size);
    m_length += size;
    return true;
}

bool PlacesBaseEncoder::encodeString(const std::string &text)
{
    if (text.size() >= SIZE_LIMIT)
        throw std::bad_alloc();
    const auto size = static_cast<unsigned int>(text.size());
    return encode(size) && encodeCharArray(text.data(), size);
}

bool PlacesBaseEncoder::encodeStringPair(const std::string &first, const std::string &second)
{
    return encodeString(first) && encodeString(second);
}

bool PlacesBaseEncoder::encodeQString(const QString &text)
{
    const auto *units = reinterpret_cast<const char16_t *>(text.utf16());
    const auto count = static_cast<std::size_t>(text.size());
    encode(0U);
    const unsigned int start = m_length;
    // With room for the longest form, measuring is not needed.
    if (count > (m_capacity - m_length) / utf8::MAX_BYTES_PER_UNIT) {
        const std::size_t size = utf8::length(units, count);
        if (size >= SIZE_LIMIT)
            throw std::bad_alloc();
        ensureBuffer(static_cast<unsigned int>(size), false);
    }
    const char *end = utf8::write(units, count, m_buffer.get() + start);
    const auto size = static_cast<unsigned int>(end - (m_buffer.get() + start));
    std::memcpy(m_buffer.get() + start - sizeof size, &size, sizeof size);
    m_length += size;
    return true;
}

bool PlacesBaseEncoder::getData(char *&data, int &length) const
{
    data = m_buffer.get();
    length = static_cast<int>(m_length);
    return true;
}

} // namespace orix_places_protocol
