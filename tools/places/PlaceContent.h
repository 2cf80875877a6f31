// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/AuxiliaryData.h>
#include <places/Location.h>

#include <QtCore/QList>
#include <QtCore/QString>
#include <QtCore/QStringList>

namespace vela::platform::places
{
class Place;
}

namespace tool
{

namespace places = vela::platform::places;

/// What a place says, without what its store says of it (number, owner, uses, times), to be compared and changed.
struct PlaceContent
{
    static PlaceContent of(const places::Place &place);

    /// Changes a place into one that says this. Records that it has already keep their numbers and providers.
    void applyTo(places::Place &place) const;

    /// This content with all that another one says. What the other one does not say stays: empty texts, parts of
    /// addresses, records and their properties. Tags and aliases are those of both.
    [[nodiscard]] PlaceContent with(const PlaceContent &other) const;

    bool operator==(const PlaceContent &other) const;

    QString name;
    QString description;
    QString source;
    bool isPrivate = false;
    quint64 expiryTime = 0; ///< Seconds since 1970-01-01T00:00:00 UTC; 0 for never.
    QStringList tags;
    QStringList aliases;
    QList<places::Location> locations;
    QList<places::AuxiliaryData> records;
};

} // namespace tool
