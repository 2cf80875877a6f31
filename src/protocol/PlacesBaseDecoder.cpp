// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "protocol/PlacesBaseDecoder.h"

#include <msgclient.h>

#include <limits>
#include <utility>

namespace orix_places_protocol
{

PlacesBaseDecoder::PlacesBaseDecoder(const char *data, unsigned int length)
{
    if (!data)
        return;
    m_owned.reset(new char[length]);
    if (length > 0)
        std::memcpy(m_owned.get(), data, length);
    m_start = m_cursor = m_owned.get();
    m_end = m_start + length;
}

PlacesBaseDecoder::PlacesBaseDecoder(const _msgserver_data *message)
{
    if (!message || !message->data)
        return;
    m_start = m_cursor = static_cast<const char *>(message->data);
    m_end = m_start + message->length;
}

PlacesBaseDecoder::~PlacesBaseDecoder() = default;

// NOLINTNEXTLINE(bugprone-unhandled-self-assignment): each exchange with itself changes nothing
PlacesBaseDecoder &PlacesBaseDecoder::operator=(PlacesBaseDecoder &other)
{
    m_owned = std::move(other.m_owned);
    m_start = std::exchange(other.m_start, nullptr);
    m_end = std::exchange(other.m_end, nullptr);
    m_cursor = std::exchange(other.m_cursor, nullptr);
    return *this;
}

bool PlacesBaseDecoder::decodeCharArray(const char *&out, unsigned int size)
{
    if (!verifyBuffer(size, false))
        return false;
    out = m_cursor;
    m_cursor += size;
    return true;
}

bool PlacesBaseDecoder::decodeCounted(const char *&bytes, unsigned int &size)
{
    bytes = nullptr;
    return decode(size) && (size == 0 || decodeCharArray(bytes, size));
}

bool PlacesBaseDecoder::decodeString(std::string &text)
{
    const char *bytes = nullptr;
    unsigned int size = 0;
    if (!decodeCounted(bytes, size))
        return false;
    text.assign(bytes ? bytes : "", size);
    return true;
}

bool PlacesBaseDecoder::decodeStringPair(std::string &first, std::string &second)
{
    return decodeString(first) && decodeString(second);
}

bool PlacesBaseDecoder::decodeQString(QString &text)
{
    const char *bytes = nullptr;
    unsigned int size = 0;
    if (!decodeCounted(bytes, size) || size > static_cast<unsigned int>(std::numeric_limits<int>::max()))
        return false;
    text = QString::fromUtf8(bytes, static_cast<int>(size));
    return true;
}

bool PlacesBaseDecoder::decodeLatLon(double &first, double &second)
{
    return decode(first) && decode(second);
}

bool PlacesBaseDecoder::decodeCoordinate(double &first, double &second, double &third, float &fourth, float &fifth)
{
    return decode(first) && decode(second) && decode(third) && decode(fourth) && decode(fifth);
}

} // namespace orix_places_protocol
