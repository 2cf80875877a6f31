// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "places/Coordinates.h"

#include <cmath>
#include <limits>

namespace vela::platform::places
{

class CoordinatesPrivate
{
public:
    static CoordinatesPrivate *privateFromPublic(Coordinates *point) { return point->d.get(); }
    static const CoordinatesPrivate *privateFromPublic(const Coordinates *point) { return point->d.get(); }

    /// True when both are unknown, or differ by less than 1e-6. The tolerance is the same for degrees and metres.
    static bool equals(double a, double b) { return std::isnan(a) ? std::isnan(b) : std::fabs(a - b) < 1e-6; }

    bool isValid() const;
    bool operator==(const CoordinatesPrivate &other) const;

    double altitude = std::numeric_limits<double>::quiet_NaN();
    double latitude = std::numeric_limits<double>::quiet_NaN();
    double longitude = std::numeric_limits<double>::quiet_NaN();
    float horizontalAccuracy = std::numeric_limits<float>::quiet_NaN();
    float verticalAccuracy = std::numeric_limits<float>::quiet_NaN();
};

} // namespace vela::platform::places
