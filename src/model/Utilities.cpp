// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "places/Utilities.h"

#include "model/PlacePrivate.h"
#include "protocol/PlacesAPIDecoder.h"
#include "protocol/PlacesAPIEncoder.h"

#include <cmath>
#include <cstring>
#include <new>

namespace vela::platform::places
{

namespace
{

/// Mean radius of the Earth in metres: (2a + b) / 3 of the WGS 84 ellipsoid, by the IUGG's definition.
constexpr double EARTH_RADIUS = 6371009.0;
constexpr double RADIANS_PER_DEGREE = 0.017453292519943295;

double haversine(double radians)
{
    const double half = std::sin(radians / 2);
    return half * half;
}

} // namespace

double Utilities::calculateDistanceInMeter(const Coordinates &a, const Coordinates &b)
{
    const double latitudeA = a.latitude() * RADIANS_PER_DEGREE;
    const double latitudeB = b.latitude() * RADIANS_PER_DEGREE;
    const double longitudes = (a.longitude() - b.longitude()) * RADIANS_PER_DEGREE;
    const double h =
        haversine(latitudeA - latitudeB) + std::cos(latitudeA) * std::cos(latitudeB) * haversine(longitudes);
    return 2 * std::atan2(std::sqrt(h), std::sqrt(std::max(0.0, 1 - h))) * EARTH_RADIUS;
}

std::string Utilities::toStdString(const QString &text)
{
    return text.toStdString();
}

void Utilities::replaceAll(std::string &text, const std::string &from, const std::string &to)
{
    if (from.empty())
        return;
    for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
        text.replace(at, from.size(), to);
}

bool Utilities::readMapUrl(const QUrl &url, Place &place)
{
    Place decoded;
    PlacePrivate::decodePlaceFromMapUrl(url, decoded);
    if (!decoded.hasPhysicalLocation())
        return false;
    PlacePrivate::decodePlaceFromMapUrl(url, place);
    return true;
}

bool Utilities::serialize(char *&out, int &size, const Place &place)
{
    try {
        orix_places_protocol::PlacesAPIEncoder encoder;
        char *data = nullptr;
        int length = 0;
        if (!encoder.encodePlace(place) || !encoder.getData(data, length))
            return false;
        out = new char[static_cast<std::size_t>(length)];
        std::memcpy(out, data, static_cast<std::size_t>(length));
        size = length;
        return true;
    } catch (const std::bad_alloc &) {
        return false;
    }
}

bool Utilities::deserialize(Place *&out, const char *data, int size)
{
    if (size < 0)
        return false;
    try {
        orix_places_protocol::PlacesAPIDecoder decoder(data, static_cast<unsigned int>(size));
        return decoder.serviceDecodePlace(out);
    } catch (const std::bad_alloc &) {
        return false;
    }
}

} // namespace vela::platform::places
