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

/// A place of the service's files: source of queries, and reference for results.
struct KnownPlace
{
    KnownPlace() = default;
    /// @param place as read from a GeoJSON feature.
    explicit KnownPlace(const vela::platform::places::Place &place);

    /// True when a result is this place: the ids of the features are equal, or the names are equal and the positions
    /// are within one kilometre. So an airport never matches the city of its name.
    [[nodiscard]] bool isFoundAs(const vela::platform::places::AbstractPlace &found) const;

    QString id; ///< Of the feature; empty when there is none.
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
