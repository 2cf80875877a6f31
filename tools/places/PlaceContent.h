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

/// The content of a place without the values of its store (id, owner, uses, times), for comparing and changing.
struct PlaceContent
{
    static PlaceContent of(const places::Place &place);

    /// Sets the content of a place. Existing records keep their ids and providers.
    void applyTo(places::Place &place) const;

    /// This content with all values of another one applied. Empty values of the other one change nothing: texts, parts
    /// of addresses, records and their properties. Tags and aliases are merged.
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
