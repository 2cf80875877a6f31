// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

namespace vela::platform::places
{
class Coordinates;
}

namespace placesd
{

/// Distance from a position to boxes of latitude and longitude, on the sphere.
class BoxDistance
{
public:
    /// @param centre a valid position.
    explicit BoxDistance(const vela::platform::places::Coordinates &centre);

    /// Distance to the nearest point of a box, as the haversine of the angle: it grows with the distance, from 0 to 1,
    /// and needs no inverse function. NaN when a corner is NaN. Corners are in degrees; west <= east.
    [[nodiscard]] double haversineTo(double south, double north, double west, double east) const;

private:
    [[nodiscard]] double haversineTo(double latitude, double longitudes) const;
    [[nodiscard]] double nearestLatitude(double difference, double south, double north) const;

    const double m_latitude;  ///< Degrees.
    const double m_longitude; ///< Degrees.
    const double m_sine;      ///< Of the latitude.
    const double m_cosine;    ///< Of the latitude.
};

} // namespace placesd
