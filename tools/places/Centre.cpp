// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "Centre.h"

#include "PlaceLink.h"

#include <places/Place.h>
#include <places/PlaceHeader.h>
#include <places/PlaceManager.h>

#include <QtCore/QSharedPointer>
#include <QtCore/QVector>

#include <algorithm>
#include <memory>

namespace tool
{

using namespace places;

namespace
{

/// The position of a stored place.
ExitStatus positionOf(qint64 id, Coordinates &position)
{
    Error::Type error = Error::Success;
    const std::unique_ptr<Place> place(PlaceManager().getPlace(id, &error));
    if (!place)
        return report(error, nameOfPlace(id));
    position = place->primaryCoordinates();
    if (position.isValid())
        return Done;
    return fail(nameOfPlace(id), QStringLiteral("has no position; give it one with places update --at"));
}

using Found = QVector<QSharedPointer<PlaceHeader>>;

/// The places that a name may mean: those of exactly this name or, without any, all that a find finds.
Found namesakes(const QString &name, Error::Type &error)
{
    Found all;
    const auto headers = PlaceManager().findPlaces(name, &error);
    for (PlaceHeader *header : headers)
        all.append(QSharedPointer<PlaceHeader>(header));
    const auto isSame = [&name](const auto &place) { return place->name().compare(name, Qt::CaseInsensitive) == 0; };
    const auto end = std::stable_partition(all.begin(), all.end(), isSame);
    if (end != all.begin())
        all.erase(end, all.end());
    return all;
}

/// Names what a name may mean, and how to say which.
void complainOfNamesakes(const QString &name, const Found &found)
{
    constexpr int MOST = 10;
    QStringList candidates;
    const auto shown = found.mid(0, MOST);
    for (const auto &place : shown)
        candidates.append(QStringLiteral("%1 %2").arg(place->id()).arg(nameOfPlace(*place)));
    const QString more = found.size() > MOST ? QStringLiteral(" and others") : QString();
    complain(name,
             QStringLiteral("may be %1%2; name one by its number").arg(candidates.join(QStringLiteral(", ")), more));
}

} // namespace

ExitStatus findCentre(const QString &centre, Coordinates &position)
{
    bool isNumber = false;
    const qint64 id = centre.toLongLong(&isNumber);
    position = readAnyPosition(centre).position;
    if (position.isValid())
        return Done;
    if (isNumber)
        return positionOf(id, position);
    Error::Type error = Error::Success;
    const Found found = namesakes(centre, error);
    if (error != Error::Success)
        return report(error, centre);
    if (found.size() == 1)
        return positionOf(found.first()->id(), position);
    if (found.isEmpty())
        complain(centre, QStringLiteral("no stored place has this name; ") + unknownForm());
    else
        complainOfNamesakes(centre, found);
    return Failed;
}

} // namespace tool
