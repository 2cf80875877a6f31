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

/// Which stored places a command is about: some by their numbers, or those for which all conditions hold; without any
/// condition all of them.
struct PlaceChoice
{
    std::vector<qint64> ids;
    QString words;                ///< Of the name, as a find by words reads them.
    QStringList tags;             ///< One of them.
    std::optional<QString> owner; ///< Empty for places without one.
    std::optional<GeoBox> box;    ///< In which the position is.
    places::Coordinates centre;   ///< From which distances count; not valid for none.
    std::optional<double> radius; ///< Largest distance from the centre in metres.
    quint64 since = 0;            ///< Stored or changed then or later, in seconds since 1970-01-01T00:00:00 UTC.

    [[nodiscard]] bool hasConditions() const;
    /// True when nothing but words, if that, says which places are meant.
    [[nodiscard]] bool isOfWordsOnly() const;
    /// True when the rule selects places that the conditions do not.
    [[nodiscard]] bool needsFilter() const { return box || radius || since > 0; }

    [[nodiscard]] places::SearchRule rule() const;
    /// The order in which the chosen places end soonest: nearest or latest first.
    [[nodiscard]] places::SortRule sort() const;

    /// Calls `visit` for each place of the conditions, page by page. False from it ends that. Places are full ones when
    /// `since` is set, else headers.
    /// @param sort nothing for the choice's own order.
    using Visit = std::function<bool(const places::AbstractPlace &place)>;
    [[nodiscard]] places::Error::Type forEach(const std::optional<places::SortRule> &sort, const Visit &visit) const;

private:
    [[nodiscard]] bool accepts(const places::AbstractPlace &place) const;
    /// True when no place behind this one in the choice's own order is accepted.
    [[nodiscard]] bool endsBefore(const places::AbstractPlace &place) const;
};

} // namespace tool
