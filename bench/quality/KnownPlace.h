// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/Coordinates.h>

#include <QtCore/QString>
#include <QtCore/QStringList>

namespace vela::platform::places
{
class AbstractPlace;
class Place;
} // namespace vela::platform::places

namespace bench
{

/// A place of the files that a service answers from: what questions are made of, and what a result is compared with.
struct KnownPlace
{
    KnownPlace() = default;
    /// @param place what the GeoJSON reader makes of a feature.
    explicit KnownPlace(const vela::platform::places::Place &place);

    /// True when a result is this place: the ids of the features are the same, or the names are and the positions are
    /// at most one kilometre apart. So an airport is never the city of its name.
    [[nodiscard]] bool isFoundAs(const vela::platform::places::AbstractPlace &found) const;

    QString id; ///< Of the feature; empty when it has none.
    QString name;
    QString region;
    QString country;
    QString countryCode; ///< ISO 3166-1 alpha-2.
    QString airportCode; ///< IATA; empty when there is none.
    bool isAirport = false;
    QStringList translations; ///< Names in other languages.
    QStringList otherNames;   ///< Former, official, short and local names; no codes.
    vela::platform::places::Coordinates position;
};

} // namespace bench
