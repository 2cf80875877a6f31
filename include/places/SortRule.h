// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/Coordinates.h>
#include <places/Global.h>

#include <QtCore/QObject>
#include <QtCore/QSharedPointer>

namespace vela::platform::places
{

class SortRulePrivate;

/// Field that a find sorts by.
struct PLACES_EXPORT SortField
{
    Q_GADGET
public:
    enum Type : int
    {
        Relevance = 0,    ///< 0: usage count, then time of last use.
        Name = 1,         ///< 1: name, ignoring case.
        LastUsedTime = 2, ///< 2: time of last use.
        CreationTime = 3, ///< 3: time when the place was added.
        UpdateTime = 4,   ///< 4: time of last change.
        UsageCount = 5,   ///< 5: number of uses.
    };
    Q_ENUM(Type)
};

/// Direction of an order.
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

/// Order of the results of a find. A rule is immutable; copies share it.
class PLACES_EXPORT SortRule
{
public:
    /// By relevance, most relevant first.
    SortRule();
    SortRule(const SortRule &other);
    /// Moves the value; `other` becomes the default rule.
    SortRule(SortRule &&other) noexcept;
    SortRule &operator=(const SortRule &other);
    SortRule &operator=(SortRule &&other) noexcept;
    ~SortRule();

    /// Swaps the values without a copy.
    void swap(SortRule &other) noexcept { d.swap(other.d); }
    friend void swap(SortRule &left, SortRule &right) noexcept { left.swap(right); }

    /// By a field of the place.
    [[nodiscard]] static SortRule createSimpleSortRule(SortField::Type field, SortOrder::Type order);
    /// By distance from a point; places without a position always come last.
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
