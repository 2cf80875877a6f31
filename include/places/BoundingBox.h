// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/Coordinates.h>

namespace vela::platform::places
{

class BoundingBoxPrivate;

/// A rectangle on the map given by two corners. Corners are kept as given: a box may cross the 180th meridian.
class PLACES_EXPORT BoundingBox
{
public:
    /// A box without corners; it is not valid.
    BoundingBox();
    BoundingBox(const BoundingBox &other);
    /// Moves the value; `other` becomes a box without corners.
    BoundingBox(BoundingBox &&other) noexcept;
    BoundingBox &operator=(const BoundingBox &other);
    BoundingBox &operator=(BoundingBox &&other) noexcept;
    ~BoundingBox();

    /// Swaps the values without a copy.
    void swap(BoundingBox &other) noexcept { d.swap(other.d); }
    friend void swap(BoundingBox &left, BoundingBox &right) noexcept { left.swap(right); }

    /// North-west corner; invalid when unset.
    [[nodiscard]] Coordinates topLeft() const;
    void setTopLeft(const Coordinates &corner);

    /// South-east corner; invalid when unset.
    [[nodiscard]] Coordinates bottomRight() const;
    void setBottomRight(const Coordinates &corner);

    /// True when both corners are valid. Their relative position is not checked.
    [[nodiscard]] bool isValid() const;

    /// Compares the corners by the rules of Coordinates.
    bool operator==(const BoundingBox &other) const;
    bool operator!=(const BoundingBox &other) const;

private:
    friend class BoundingBoxPrivate;
    ValuePointer<BoundingBoxPrivate> d;
};

/// For debugging: the corners.
PLACES_EXPORT QDebug operator<<(QDebug debug, const BoundingBox &box);

} // namespace vela::platform::places

Q_DECLARE_TYPEINFO(vela::platform::places::BoundingBox, Q_MOVABLE_TYPE);
Q_DECLARE_METATYPE(vela::platform::places::BoundingBox)
