// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/Global.h>

namespace vela::platform::places
{

class CoordinatesPrivate;

/// A point on the Earth in the WGS 84 system. A component that is not known is NaN; nothing is range-checked when set.
class PLACES_EXPORT Coordinates
{
public:
    /// A point of which nothing is known.
    Coordinates();
    /// A point whose altitude and accuracies are not known.
    Coordinates(double latitude, double longitude);
    Coordinates(const Coordinates &other);
    /// Takes the value of `other`, which is a point of which nothing is known from then on.
    Coordinates(Coordinates &&other) noexcept;
    Coordinates &operator=(const Coordinates &other);
    Coordinates &operator=(Coordinates &&other) noexcept;
    ~Coordinates();

    /// Exchanges the values without a copy.
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

    /// Compares latitude, longitude and altitude, each within 1e-6 of its unit; two unknown components are equal.
    /// The accuracies say how well a point is known, not where it is, and are not compared.
    bool operator==(const Coordinates &other) const;
    bool operator!=(const Coordinates &other) const;

private:
    friend class CoordinatesPrivate;
    ValuePointer<CoordinatesPrivate> d;
};

/// For debugging: the components that are known.
PLACES_EXPORT QDebug operator<<(QDebug debug, const Coordinates &point);

} // namespace vela::platform::places

Q_DECLARE_TYPEINFO(vela::platform::places::Coordinates, Q_MOVABLE_TYPE);
Q_DECLARE_METATYPE(vela::platform::places::Coordinates)
