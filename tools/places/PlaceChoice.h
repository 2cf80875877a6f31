// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "GeoBox.h"

#include <places/Coordinates.h>
#include <places/Error.h>
#include <places/SearchRule.h>
#include <places/SortRule.h>

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <functional>
#include <optional>
#include <vector>

namespace vela::platform::places
{
class AbstractPlace;
}

namespace tool
{

namespace places = vela::platform::places;

/// The stored places that a command works on: given ids, or the places that meet all conditions. Without conditions
/// these are all places.
struct PlaceChoice
{
    std::vector<qint64> ids;
    QString words;                ///< Words of the name, as in a find by words.
    QStringList tags;             ///< Tags; places with any of them.
    std::optional<QString> owner; ///< Owner; empty for places without one.
    std::optional<GeoBox> box;    ///< Box that contains the position.
    places::Coordinates centre;   ///< Distances are measured from here; invalid for none.
    std::optional<double> radius; ///< Largest distance from the centre in metres.
    quint64 since = 0;            ///< Earliest time of storing or changing, in seconds since 1970-01-01T00:00:00 UTC.

    [[nodiscard]] bool hasConditions() const;
    /// True when there are no conditions except words.
    [[nodiscard]] bool isOfWordsOnly() const;
    /// True when the rule finds places that do not meet all conditions.
    [[nodiscard]] bool needsFilter() const { return box || radius || since > 0; }

    [[nodiscard]] places::SearchRule rule() const;
    /// The order in which the chosen places come first: nearest or latest first.
    [[nodiscard]] places::SortRule sort() const;

    /// Calls `visit` for each place that meets the conditions, page by page, until it returns false. Places are full
    /// ones when `since` is set, else headers.
    /// @param sort std::nullopt for the order of sort().
    using Visit = std::function<bool(const places::AbstractPlace &place)>;
    [[nodiscard]] places::Error::Type forEach(const std::optional<places::SortRule> &sort, const Visit &visit) const;

private:
    [[nodiscard]] bool accepts(const places::AbstractPlace &place) const;
    /// True when no place from this one on is accepted, in the order of sort().
    [[nodiscard]] bool endsBefore(const places::AbstractPlace &place) const;
};

} // namespace tool
