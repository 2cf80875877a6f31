// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/Coordinates.h>
#include <places/Global.h>

#include <QtCore/QObject>
#include <QtCore/QSharedPointer>

namespace vela::platform::places
{

class SortRulePrivate;

/// What a find sorts by.
struct PLACES_EXPORT SortField
{
    Q_GADGET
public:
    enum Type : int
    {
        Relevance = 0,    ///< 0: usage count, then time of last use.
        Name = 1,         ///< 1: name, without regard to case.
        LastUsedTime = 2, ///< 2: time of last use.
        CreationTime = 3, ///< 3: time of storing.
        UpdateTime = 4,   ///< 4: time of last change.
        UsageCount = 5,   ///< 5: number of uses.
    };
    Q_ENUM(Type)
};

/// Which end of the order comes first.
struct PLACES_EXPORT SortOrder
{
    Q_GADGET
public:
    enum Type : int
    {
        Ascending = 1,  ///< 1: smallest, earliest or nearest first.
        Descending = 2, ///< 2: largest, latest or farthest first.
    };
    Q_ENUM(Type)
};

/// Says in which order a find returns its places. A rule never changes once it is made; copies share it.
class PLACES_EXPORT SortRule
{
public:
    /// By relevance, most relevant first.
    SortRule();
    SortRule(const SortRule &other);
    /// Takes the value of `other`, which is the default rule from then on.
    SortRule(SortRule &&other) noexcept;
    SortRule &operator=(const SortRule &other);
    SortRule &operator=(SortRule &&other) noexcept;
    ~SortRule();

    /// Exchanges the values without a copy.
    void swap(SortRule &other) noexcept { d.swap(other.d); }
    friend void swap(SortRule &left, SortRule &right) noexcept { left.swap(right); }

    /// By a field of the place.
    [[nodiscard]] static SortRule createSimpleSortRule(SortField::Type field, SortOrder::Type order);
    /// By distance from a point; places without a position come last.
    [[nodiscard]] static SortRule createDistanceSortRule(const Coordinates &centre, SortOrder::Type order);

    /// Compares field, order and centre.
    bool operator==(const SortRule &other) const;
    bool operator!=(const SortRule &other) const;

private:
    friend class SortRulePrivate;
    explicit SortRule(SortRulePrivate *owned);
    QSharedPointer<SortRulePrivate> d;
};

/// For debugging: field or point, and order.
PLACES_EXPORT QDebug operator<<(QDebug debug, const SortRule &rule);

} // namespace vela::platform::places

Q_DECLARE_TYPEINFO(vela::platform::places::SortRule, Q_MOVABLE_TYPE);
Q_DECLARE_METATYPE(vela::platform::places::SortRule)
