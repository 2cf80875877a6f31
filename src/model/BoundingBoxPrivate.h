// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "places/BoundingBox.h"

namespace vela::platform::places
{

class BoundingBoxPrivate
{
public:
    /// The private part, for reading and writing in place.
    static BoundingBoxPrivate *privateFromPublic(BoundingBox *box) { return box->d.get(); }
    static const BoundingBoxPrivate *privateFromPublic(const BoundingBox *box) { return box->d.get(); }

    bool isValid() const { return topLeft.isValid() && bottomRight.isValid(); }
    bool operator==(const BoundingBoxPrivate &other) const
    {
        return topLeft == other.topLeft && bottomRight == other.bottomRight;
    }

    Coordinates topLeft;
    Coordinates bottomRight;
};

} // namespace vela::platform::places
