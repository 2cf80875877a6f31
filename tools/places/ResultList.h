// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Report.h"

#include <places/SearchResult.h>

#include <QtCore/QVector>

namespace tool
{

/// The results of each group and the chosen place. Results of the previous search stay visible until new ones arrive,
/// but cannot be chosen.
class ResultList
{
public:
    using PlacePointer = QSharedPointer<places::AbstractPlace>;

    /// The results of one group so far.
    struct Group
    {
        places::SearchResultGroup::Type group = places::SearchResultGroup::None;
        places::SearchResult result;
        places::Error::Type error = places::Error::Success;
        bool isFresh = false; ///< False while these are results of the previous search.
    };

    /// Begins a search of these groups; their answers are now outstanding.
    void startSearch(const QList<places::SearchResultGroup::Type> &groups);
    /// Marks all results as results of the previous search.
    void makeStale();
    void take(places::Error::Type error, const places::SearchResult &result);

    [[nodiscard]] const QVector<Group> &groups() const { return m_groups; }
    /// The places that can be chosen, in the order of the groups.
    [[nodiscard]] QVector<PlacePointer> choices() const;
    /// True when no outstanding answer can change the first place.
    [[nodiscard]] bool isFirstKnown() const;
    /// The place that the user moved to, else the first one; null when there is none or an outstanding answer can
    /// change it.
    [[nodiscard]] PlacePointer chosen() const;
    /// Moves the choice down by `rows`, as far as there are places. False when there is no place yet.
    bool move(int rows);

private:
    QVector<Group> m_groups;
    PlacePointer m_chosen; ///< Null until the user moves.
};

} // namespace tool
