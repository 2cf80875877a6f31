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

/// What tells whether a member of a file is a place that is stored. docs/formats.md says the rules.
struct MemberKey
{
    /// Largest distances in metres: of places with the same id, of places with the same name, and of places with the
    /// same name whose ids differ. Two stops of one name on both sides of a street have different ids.
    static constexpr double SAME_ID_RADIUS = 1000;
    static constexpr double SAME_NAME_RADIUS = 25;
    static constexpr double OTHER_ID_RADIUS = 1;

    /// The property under which the record `geojson.feature` of a place keeps the id.
    static constexpr char ID_PROPERTY[] = "id";

    static MemberKey of(const places::Place &place);

    /// True for the same id, and the same name or a position nearby. Ids alone say little: many files number from 1.
    [[nodiscard]] bool isSameById(const MemberKey &other) const;
    /// True for the same name and nearly the same position; without positions, for the same name and address.
    [[nodiscard]] bool isSameByName(const MemberKey &other) const;
    /// True when both positions are known and no further apart than `radius`, in metres.
    [[nodiscard]] bool isWithin(const MemberKey &other, double radius) const;

    QString id;   ///< Its own id in the file, as a JSON text; empty when it has none.
    QString name; ///< Without regard to case.
    places::Coordinates position;
    places::Address address;
};

} // namespace tool
