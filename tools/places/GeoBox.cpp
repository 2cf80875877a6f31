// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "GeoBox.h"

#include <places/Utilities.h>

#include <QtCore/QStringList>

#include <algorithm>

namespace tool
{

using vela::platform::places::Coordinates;
using vela::platform::places::Utilities;

namespace
{

constexpr double HALF_CIRCUMFERENCE = 20'100'000; // metres, rounded up
constexpr double ROUNDING = 1;                    // metre

} // namespace

std::optional<GeoBox> GeoBox::parse(const QString &text)
{
    const QStringList parts = text.split(QLatin1Char(','));
    if (parts.size() != 4)
        return std::nullopt;
    double numbers[4] = {};
    for (int i = 0; i < 4; ++i) {
        bool isNumber = false;
        numbers[i] = parts[i].trimmed().toDouble(&isNumber);
        if (!isNumber)
            return std::nullopt;
    }
    const GeoBox box{numbers[0], numbers[1], numbers[2], numbers[3]};
    const bool isOnEarth = Coordinates(box.south, box.west).isValid() && Coordinates(box.north, box.east).isValid();
    return isOnEarth && box.south <= box.north ? std::optional(box) : std::nullopt;
}

bool GeoBox::contains(const Coordinates &position) const
{
    const double longitude = position.longitude();
    const bool isBetween =
        west <= east ? longitude >= west && longitude <= east : longitude >= west || longitude <= east;
    return position.isValid() && position.latitude() >= south && position.latitude() <= north && isBetween;
}

Coordinates GeoBox::centre() const
{
    const double longitude = west + width() / 2;
    return Coordinates((south + north) / 2, longitude > 180 ? longitude - 360 : longitude);
}

/// In a box of at most 180 degrees the corners are the points farthest from the centre.
double GeoBox::radius() const
{
    if (width() > 180)
        return HALF_CIRCUMFERENCE;
    return ROUNDING
           + std::max(Utilities::calculateDistanceInMeter(centre(), Coordinates(south, west)),
                      Utilities::calculateDistanceInMeter(centre(), Coordinates(north, west)));
}

} // namespace tool
