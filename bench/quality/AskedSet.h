// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "service/Question.h"

#include <places/SearchResultGroup.h>

#include <QtCore/QString>

#include <vector>

namespace bench
{

/// The two groups of results that a search box shows, one behind the other.
struct ShownGroups
{
    using Group = vela::platform::places::SearchResultGroup::Type;
    Group upper;
    Group lower;
    const char *upperName; ///< Title of the column for the upper group alone.
    const char *bothName;  ///< Title of the column for both.
};

/// How many of the questions of a set found what was meant.
struct Hits
{
    int first = 0;      ///< In the first row.
    int withinFive = 0; ///< In the first five rows.
};

/// A question that did not find what was meant within the first five rows of both groups.
struct Miss
{
    QString typed;
    QString meant;
    QString found; ///< In the first row; empty when nothing was found.
};

/// How the questions of a set were answered.
struct AskedSet
{
    QString name;
    int asked = 0;
    bool hasMeant = true; ///< False where only the time matters.
    Hits upper;
    Hits both;
    Answers upperTimes;
    Answers lowerTimes;
    std::vector<Miss> misses = {};
};

} // namespace bench
