// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/Address.h>
#include <places/Coordinates.h>

#include <QtCore/QString>

namespace vela::platform::places
{
class Place;
}

namespace tool
{

namespace places = vela::platform::places;

/// Identifies a member of a file among the stored places. docs/formats.md describes the rules.
struct MemberKey
{
    /// Largest distances in metres between equal places: with the same id, with the same name, and with the same name
    /// and different ids. Two stops with one name on both sides of a street have different ids.
    static constexpr double SAME_ID_RADIUS = 1000;
    static constexpr double SAME_NAME_RADIUS = 25;
    static constexpr double OTHER_ID_RADIUS = 1;

    /// Property of the record `geojson.feature` that keeps the id.
    static constexpr char ID_PROPERTY[] = "id";

    static MemberKey of(const places::Place &place);

    /// True for the same id with the same name or a nearby position. Ids alone are ambiguous: many files number from 1.
    [[nodiscard]] bool isSameById(const MemberKey &other) const;
    /// True for the same name and nearly the same position; without positions, for the same name and address.
    [[nodiscard]] bool isSameByName(const MemberKey &other) const;
    /// True when both positions are known and at most `radius` metres apart.
    [[nodiscard]] bool isWithin(const MemberKey &other, double radius) const;

    QString id;   ///< Id in the file, as a JSON text; empty when it has none.
    QString name; ///< Case-folded.
    places::Coordinates position;
    places::Address address;
};

} // namespace tool
