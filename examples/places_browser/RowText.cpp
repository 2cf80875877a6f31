// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "RowText.h"

#include <places/AuxiliaryData.h>
#include <places/PlaceHeader.h>
#include <places/Utilities.h>

#include <QtCore/QStringList>

using namespace vela::platform::places;

namespace
{

/// A longer description is not shown as a name.
constexpr int LONGEST_OTHER_NAME = 40;

} // namespace

bool isCategory(const AbstractPlace &result)
{
    // Search results are headers. Among them only a provider's category has a tag and no position.
    const auto *header = dynamic_cast<const PlaceHeader *>(&result);
    return header && !header->isPersisted() && !header->hasPhysicalLocation() && header->AbstractPlace::hasTag()
           && header->hasAuxiliaryData(AuxiliaryData::TypePointOfInterest) == PlaceHeader::Present;
}

QString nameText(const AbstractPlace &place)
{
    const QString other = place.description().simplified();
    const bool isName = !other.isEmpty() && other.size() <= LONGEST_OTHER_NAME && other != place.name();
    return isName ? QStringLiteral("%1 (%2)").arg(place.name(), other) : place.name();
}

QString whereText(const AbstractPlace &place)
{
    if (isCategory(place))
        return QStringLiteral("Category");
    QStringList parts = place.primaryLocation().split(QStringLiteral(", "), Qt::SkipEmptyParts);
    parts.removeAll(place.name());
    parts.removeDuplicates();
    return parts.join(QStringLiteral(", "));
}

QString distanceText(const AbstractPlace &place, const Coordinates &centre)
{
    const Coordinates position = place.primaryCoordinates();
    if (!centre.isValid() || !position.isValid())
        return {};
    const double kilometres = Utilities::calculateDistanceInMeter(centre, position) / 1000;
    return QStringLiteral("%1 km").arg(kilometres, 0, 'f', kilometres < 10 ? 1 : 0);
}
