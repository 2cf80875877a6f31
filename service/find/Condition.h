// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "find/RowSource.h"

#include <memory>
#include <optional>
#include <vector>

namespace placesd
{

/// A search rule compiled for a find. It tests single places and, where an index supports it, lists the stored places
/// that may pass.
class Condition
{
public:
    Condition() = default;
    Condition(const Condition &) = delete;
    Condition &operator=(const Condition &) = delete;
    virtual ~Condition() = default;

    [[nodiscard]] virtual bool test(const PlaceRow &row) const = 0;
    /// Cost of a test in addition to reading the name of a place, in units of reading one name.
    [[nodiscard]] virtual int cost() const { return 0; }

    /// Whether an index lists all stored places that pass, and fewer than all stored places.
    [[nodiscard]] virtual bool hasSource() const { return false; }
    /// Whether the index reads much before it gives or counts a row.
    [[nodiscard]] virtual bool isSlowToOpen() const { return false; }
    /// Places from an index, without duplicates; some of them may not pass the test.
    struct Source
    {
        std::unique_ptr<RowSource> rows;
        qint64 length = 0; ///< Number of rows, counted up to the limit only.
    };
    /// The source of the index. Only with hasSource().
    [[nodiscard]] virtual Source source(Store &store, const Order &order, qint64 limit) const;
    /// Whether the source can be sorted by the first criterion of an order.
    [[nodiscard]] virtual bool hasSortedSource(const Order &order) const;
    /// The sorted source. Only with hasSortedSource().
    [[nodiscard]] virtual std::unique_ptr<RowSource> sortedSource(Store &store, const Order &order) const;

    /// Whether all stored places pass.
    [[nodiscard]] virtual bool passesAllStored() const { return false; }
    /// The number of stored places that pass, if an index provides it. Reads no place.
    [[nodiscard]] virtual std::optional<qint64> count(Store &store) const;
};

using ConditionPtr = std::unique_ptr<Condition>;
using Conditions = std::vector<ConditionPtr>;

/// Passes when all members pass; always without members.
class AllOf : public Condition
{
public:
    explicit AllOf(Conditions members);
    [[nodiscard]] bool test(const PlaceRow &row) const override;
    [[nodiscard]] int cost() const override;
    [[nodiscard]] bool hasSource() const override;
    [[nodiscard]] bool isSlowToOpen() const override;
    [[nodiscard]] Source source(Store &store, const Order &order, qint64 limit) const override;
    [[nodiscard]] bool hasSortedSource(const Order &order) const override;
    [[nodiscard]] std::unique_ptr<RowSource> sortedSource(Store &store, const Order &order) const override;
    [[nodiscard]] bool passesAllStored() const override;
    [[nodiscard]] std::optional<qint64> count(Store &store) const override;

private:
    [[nodiscard]] const Condition *sorted(const Order &order) const;

    Conditions m_members; ///< Cheapest test first.
};

/// Passes when a member passes; never without members.
class AnyOf : public Condition
{
public:
    explicit AnyOf(Conditions members)
        : m_members(std::move(members))
    {}
    [[nodiscard]] bool test(const PlaceRow &row) const override;
    [[nodiscard]] int cost() const override;
    [[nodiscard]] bool hasSource() const override;
    [[nodiscard]] bool isSlowToOpen() const override;
    [[nodiscard]] Source source(Store &store, const Order &order, qint64 limit) const override;
    [[nodiscard]] bool hasSortedSource(const Order &order) const override;
    [[nodiscard]] std::unique_ptr<RowSource> sortedSource(Store &store, const Order &order) const override;
    [[nodiscard]] std::optional<qint64> count(Store &store) const override;

private:
    const Conditions m_members;
};

/// Passes when its member does not pass.
class Not : public Condition
{
public:
    explicit Not(ConditionPtr member)
        : m_member(std::move(member))
    {}
    [[nodiscard]] bool test(const PlaceRow &row) const override { return !m_member->test(row); }
    [[nodiscard]] int cost() const override { return m_member->cost(); }

private:
    const ConditionPtr m_member;
};

ConditionPtr everything();
ConditionPtr nothing();

} // namespace placesd
