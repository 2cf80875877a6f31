// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "service/Question.h"

#include <places/SearchResultGroup.h>

#include <QtCore/QString>

#include <vector>

namespace bench
{

/// The two groups of results that a search box shows, one after the other.
struct ShownGroups
{
    using Group = vela::platform::places::SearchResultGroup::Type;
    Group upper;
    Group lower;
    const char *upperName; ///< Column title for the upper group alone.
    const char *bothName;  ///< Column title for both.
};

/// How many queries of a set found the intended place.
struct Hits
{
    int first = 0;      ///< In the first row.
    int withinFive = 0; ///< In the first five rows.
};

/// A query whose intended place is not in the first five rows of both groups.
struct Miss
{
    QString typed;
    QString meant;
    QString found; ///< Name in the first row; empty when nothing was found.
};

/// Results of a set of queries.
struct AskedSet
{
    QString name;
    int asked = 0;
    bool hasMeant = true; ///< False when only the time matters.
    Hits upper;
    Hits both;
    Answers upperTimes;
    Answers lowerTimes;
    std::vector<Miss> misses = {};
};

} // namespace bench
