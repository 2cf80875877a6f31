// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "places/BoundingBox.h"

#include "model/BoundingBoxPrivate.h"
#include "model/DebugParts.h"

namespace vela::platform::places
{

BoundingBox::BoundingBox()
    : d(new BoundingBoxPrivate)
{}

BoundingBox::BoundingBox(const BoundingBox &other) = default;
BoundingBox::BoundingBox(BoundingBox &&other) noexcept = default;
BoundingBox &BoundingBox::operator=(const BoundingBox &other) = default;
BoundingBox &BoundingBox::operator=(BoundingBox &&other) noexcept = default;
BoundingBox::~BoundingBox() = default;

Coordinates BoundingBox::topLeft() const
{
    return d->topLeft;
}

void BoundingBox::setTopLeft(const Coordinates &corner)
{
    d->topLeft = corner;
}

Coordinates BoundingBox::bottomRight() const
{
    return d->bottomRight;
}

void BoundingBox::setBottomRight(const Coordinates &corner)
{
    d->bottomRight = corner;
}

bool BoundingBox::isValid() const
{
    return d->isValid();
}

bool BoundingBox::operator==(const BoundingBox &other) const
{
    return *d == *other.d;
}

bool BoundingBox::operator!=(const BoundingBox &other) const
{
    return !(*this == other);
}

QDebug operator<<(QDebug debug, const BoundingBox &box)
{
    DebugParts(debug, "BoundingBox").add(box.topLeft()).add(box.bottomRight());
    return debug;
}

} // namespace vela::platform::places
