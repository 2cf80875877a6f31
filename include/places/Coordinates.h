// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/Global.h>

namespace vela::platform::places
{

class CoordinatesPrivate;

/// A point on the Earth in WGS 84. Unknown components are NaN; setters do not check ranges.
class PLACES_EXPORT Coordinates
{
public:
    /// A point with all components unknown.
    Coordinates();
    /// A point with unknown altitude and accuracies.
    Coordinates(double latitude, double longitude);
    Coordinates(const Coordinates &other);
    /// Moves the value; `other` becomes a point with all parts unknown.
    Coordinates(Coordinates &&other) noexcept;
    Coordinates &operator=(const Coordinates &other);
    Coordinates &operator=(Coordinates &&other) noexcept;
    ~Coordinates();

    /// Swaps the values without a copy.
    void swap(Coordinates &other) noexcept { d.swap(other.d); }
    friend void swap(Coordinates &left, Coordinates &right) noexcept { left.swap(right); }

    /// Degrees, -90 (south) to 90 (north); NaN when unknown.
    [[nodiscard]] double latitude() const;
    void setLatitude(double degrees);

    /// Degrees, -180 (west) to 180 (east); NaN when unknown.
    [[nodiscard]] double longitude() const;
    void setLongitude(double degrees);

    /// Metres above the ellipsoid; NaN when unknown.
    [[nodiscard]] double altitude() const;
    void setAltitude(double metres);

    /// Radius of uncertainty of latitude and longitude, in metres; NaN when unknown.
    [[nodiscard]] float horizontalAccuracy() const;
    void setHorizontalAccuracy(float metres);

    /// Uncertainty of the altitude, in metres; NaN when unknown.
    [[nodiscard]] float verticalAccuracy() const;
    void setVerticalAccuracy(float metres);

    /// True when latitude and longitude are known and within their ranges, ends included.
    [[nodiscard]] bool isValid() const;

    /// Compares latitude, longitude and altitude, with a tolerance of 1e-6 units; two unknown components are equal.
    /// Accuracies are not compared.
    bool operator==(const Coordinates &other) const;
    bool operator!=(const Coordinates &other) const;

private:
    friend class CoordinatesPrivate;
    ValuePointer<CoordinatesPrivate> d;
};

/// For debugging: the known components.
PLACES_EXPORT QDebug operator<<(QDebug debug, const Coordinates &point);

} // namespace vela::platform::places

Q_DECLARE_TYPEINFO(vela::platform::places::Coordinates, Q_MOVABLE_TYPE);
Q_DECLARE_METATYPE(vela::platform::places::Coordinates)
