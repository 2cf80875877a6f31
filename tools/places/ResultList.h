// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Report.h"

#include <places/Coordinates.h>
#include <places/SearchResult.h>

#include <QtCore/QVector>

namespace tool
{

/// What was found in each group, and which of the places is chosen. Results of the search before stay to be seen until
/// those of the new one arrive, but cannot be chosen.
class ResultList
{
public:
    using PlacePointer = QSharedPointer<places::AbstractPlace>;

    /// One group, as far as it is known.
    struct Group
    {
        places::SearchResultGroup::Type group = places::SearchResultGroup::None;
        places::SearchResult result;
        places::Error::Type error = places::Error::Success;
        bool isFresh = false; ///< False while the answer of the search before stands here.
    };

    /// Begins a search of these groups. Answers are outstanding from now on.
    void startSearch(const QList<places::SearchResultGroup::Type> &groups);
    /// Makes all results those of the search before.
    void makeStale();
    void take(places::Error::Type error, const places::SearchResult &result);

    [[nodiscard]] const QVector<Group> &groups() const { return m_groups; }
    /// The places that can be chosen, in the order of the groups.
    [[nodiscard]] QVector<PlacePointer> choices() const;
    /// True when no outstanding answer can change which place is the first one.
    [[nodiscard]] bool isFirstKnown() const;
    /// The place that the user moved to, else the first one; null when there is none or it is not known yet.
    [[nodiscard]] PlacePointer chosen() const;
    /// Moves to the place so many rows further down, or as far as it goes. False when there is none yet.
    bool move(int rows);

private:
    QVector<Group> m_groups;
    PlacePointer m_chosen; ///< Null until the user moves.
};

} // namespace tool
