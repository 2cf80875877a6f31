// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "store/BoxDistance.h"

#include "places/Coordinates.h"

#include <QtCore/QtMath>

#include <algorithm>
#include <cmath>

namespace placesd
{

using vela::platform::places::Coordinates;

namespace
{

constexpr double POINT_SIZE = 1e-4; // degrees; 32-bit floats are 1.5e-5 apart at most

} // namespace

BoxDistance::BoxDistance(const Coordinates &centre)
    : m_latitude(centre.latitude())
    , m_longitude(centre.longitude())
    , m_sine(std::sin(qDegreesToRadians(centre.latitude())))
    , m_cosine(std::cos(qDegreesToRadians(centre.latitude())))
{}

double BoxDistance::haversineTo(double south, double north, double west, double east) const
{
    // A box this small is a single position, rounded.
    if (north - south < POINT_SIZE && east - west < POINT_SIZE)
        return haversineTo((south + north) / 2, m_longitude - (west + east) / 2);
    const double width = east - west;
    double fromWest = std::remainder(m_longitude - west, 360);
    if (fromWest < 0)
        fromWest += 360;
    // In a damaged table south may be above north.
    if (fromWest <= width)
        return haversineTo(std::max(south, std::min(m_latitude, north)), 0);
    // At any latitude the distance grows with the difference of longitude, so only the nearer edge counts.
    const double difference = std::min(360 - fromWest, fromWest - width);
    return haversineTo(nearestLatitude(qDegreesToRadians(difference), south, north), difference);
}

double BoxDistance::haversineTo(double latitude, double longitudes) const
{
    const auto haversine = [](double degrees) {
        const double sine = std::sin(qDegreesToRadians(degrees) / 2);
        return sine * sine;
    };
    return haversine(latitude - m_latitude) + m_cosine * std::cos(qDegreesToRadians(latitude)) * haversine(longitudes);
}

/// Latitude of the nearest point on a meridian between two latitudes. By the spherical law of cosines, with the
/// latitude c of the centre and the difference of longitude l, the distance d to the latitude p is
///     cos d = sin c sin p + cos c cos p cos l = A cos(p - q),  q = atan2(sin c, cos c cos l),  A >= 0.
double BoxDistance::nearestLatitude(double difference, double south, double north) const
{
    const double best = qRadiansToDegrees(std::atan2(m_sine, m_cosine * std::cos(difference)));
    if (best >= south && best <= north)
        return best;
    const auto closeness = [best](double latitude) { return std::cos(qDegreesToRadians(latitude - best)); };
    return closeness(south) > closeness(north) ? south : north;
}

} // namespace placesd
