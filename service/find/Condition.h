// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "find/RowSource.h"

#include <memory>
#include <optional>
#include <vector>

namespace placesd
{

/// What a place has to fulfil to be found: a search rule, made ready for a find. It says so of one place after the
/// other, and, where an index serves it, gives the stored places that come into question.
class Condition
{
public:
    Condition() = default;
    Condition(const Condition &) = delete;
    Condition &operator=(const Condition &) = delete;
    virtual ~Condition() = default;

    [[nodiscard]] virtual bool test(const PlaceRow &row) const = 0;
    /// How much longer a test takes than reading the name of a place, in names.
    [[nodiscard]] virtual int cost() const { return 0; }

    /// Whether an index gives all stored places that pass, and not all stored places.
    [[nodiscard]] virtual bool hasSource() const { return false; }
    /// Whether that index has to read much before it gives a row, or counts them.
    [[nodiscard]] virtual bool isSlowToOpen() const { return false; }
    /// The places that an index gives, each once; those that do not pass may be among them.
    struct Source
    {
        std::unique_ptr<RowSource> rows;
        qint64 length = 0; ///< The number of rows, counted no further than the limit.
    };
    /// That index's. Only with hasSource().
    [[nodiscard]] virtual Source source(Store &store, const Order &order, qint64 limit) const;
    /// Whether such a source can come sorted by the first criterion of an order.
    [[nodiscard]] virtual bool hasSortedSource(const Order &order) const;
    /// That source. Only with hasSortedSource().
    [[nodiscard]] virtual std::unique_ptr<RowSource> sortedSource(Store &store, const Order &order) const;

    /// Whether every stored place passes.
    [[nodiscard]] virtual bool passesAllStored() const { return false; }
    /// The number of stored places that pass, where an index knows it; reads no place.
    [[nodiscard]] virtual std::optional<qint64> count(Store &store) const;
};

using ConditionPtr = std::unique_ptr<Condition>;
using Conditions = std::vector<ConditionPtr>;

/// Passes where all members do; without members, always.
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

    Conditions m_members; ///< What takes less to test comes first.
};

/// Passes where any member does; without members, never.
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

/// Passes where its member does not.
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
