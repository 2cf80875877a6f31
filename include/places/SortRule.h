// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/Coordinates.h>
#include <places/Global.h>

#include <QtCore/QSharedPointer>

namespace vela::platform::places
{

class SortRulePrivate;

/// What a find sorts by.
struct SortField
{
    enum Type : int
    {
        Relevance = 0,    ///< 0: usage count, then time of last use.
        Name = 1,         ///< 1: name, without regard to case.
        LastUsedTime = 2, ///< 2: time of last use.
        CreationTime = 3, ///< 3: time of storing.
        UpdateTime = 4,   ///< 4: time of last change.
        UsageCount = 5,   ///< 5: number of uses.
    };
};

/// Which end of the order comes first.
struct SortOrder
{
    enum Type : int
    {
        Ascending = 1,  ///< 1: smallest, earliest or nearest first.
        Descending = 2, ///< 2: largest, latest or farthest first.
    };
};

/// Says in which order a find returns its places. A rule never changes once it is made; copies share it.
class PLACES_EXPORT SortRule
{
public:
    /// By relevance, most relevant first.
    SortRule();
    SortRule(const SortRule &other);
    SortRule &operator=(const SortRule &other);
    ~SortRule();

    static SortRule createSimpleSortRule(SortField::Type field, SortOrder::Type order);
    /// By distance from a point; places without a position come last.
    static SortRule createDistanceSortRule(const Coordinates &centre, SortOrder::Type order);

    bool operator==(const SortRule &other) const;
    bool operator!=(const SortRule &other) const;

private:
    friend class SortRulePrivate;
    explicit SortRule(SortRulePrivate *owned);
    QSharedPointer<SortRulePrivate> d;
};

} // namespace vela::platform::places
