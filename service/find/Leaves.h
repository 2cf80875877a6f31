// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "find/Condition.h"
#include "find/SearchTerm.h"
#include "store/Store.h"

#include <QtCore/QString>

/// Conditions for the leaves of a rule, each with the index that supports it.
namespace placesd
{

class Candidates;

/// By the words of a term.
class WordsCondition : public Condition
{
public:
    explicit WordsCondition(std::shared_ptr<const SearchTerm> term)
        : m_term(std::move(term))
    {}
    [[nodiscard]] bool test(const PlaceRow &row) const override { return m_term->isIn(row); }
    [[nodiscard]] int cost() const override { return m_term->cost(); }
    [[nodiscard]] bool hasSource() const override { return m_term->test().hasWords(); }
    [[nodiscard]] bool isSlowToOpen() const override { return m_term->isSlowToOpen(); }
    [[nodiscard]] Source source(Store &store, const Order &order, qint64 limit) const override;
    [[nodiscard]] std::optional<qint64> count(Store &store) const override;

private:
    const std::shared_ptr<const SearchTerm> m_term;
};

/// By the name as a whole, ignoring case and accents.
class NameCondition : public Condition
{
public:
    NameCondition(int op, const QString &term);
    [[nodiscard]] bool test(const PlaceRow &row) const override { return m_test(searchKeyIn(row.nameKey())); }
    [[nodiscard]] bool hasSource() const override;
    [[nodiscard]] Source source(Store &store, const Order &order, qint64 limit) const override;

private:
    const TextTest m_test;
};

/// By the time of the last use, in a closed interval.
class UseCondition : public Condition
{
public:
    UseCondition(qint64 from, qint64 to)
        : m_from(from)
        , m_to(to)
    {}
    [[nodiscard]] bool test(const PlaceRow &row) const override;
    [[nodiscard]] int cost() const override { return 1; }
    [[nodiscard]] bool hasSource() const override { return true; }
    [[nodiscard]] Source source(Store &store, const Order &order, qint64 limit) const override;
    [[nodiscard]] bool hasSortedSource(const Order &order) const override;
    [[nodiscard]] std::unique_ptr<RowSource> sortedSource(Store &store, const Order &order) const override;

private:
    const qint64 m_from;
    const qint64 m_to;
};

/// By owner, tag, type or quality. The places of a facet are listed by relevance; favourites, contacts and rooms also
/// by name.
class FacetCondition : public Condition
{
public:
    explicit FacetCondition(FacetTest test)
        : m_test(std::move(test))
        , m_byName(byNameOf(m_test))
    {}
    [[nodiscard]] bool test(const PlaceRow &row) const override { return row.passes(m_test); }
    [[nodiscard]] int cost() const override { return 1; }
    [[nodiscard]] bool hasSource() const override;
    [[nodiscard]] Source source(Store &store, const Order &order, qint64 limit) const override;
    [[nodiscard]] bool hasSortedSource(const Order &order) const override;
    [[nodiscard]] std::unique_ptr<RowSource> sortedSource(Store &store, const Order &order) const override;
    [[nodiscard]] std::optional<qint64> count(Store &store) const override;

private:
    struct ByName;
    static const ByName *byNameOf(const FacetTest &test);

    const FacetTest m_test;
    const ByName *const m_byName; ///< Null when there is no such list.
};

/// By a property of an auxiliary record.
class PropertyCondition : public Condition
{
public:
    /// @param keys numbers of the keys that pass; a long list is not used for the look-up.
    PropertyCondition(PropertyTest test, std::shared_ptr<const std::vector<qint64>> keys);
    [[nodiscard]] bool test(const PlaceRow &row) const override { return row.passes(m_test); }
    /// The test reads the whole record.
    [[nodiscard]] int cost() const override { return 10 * RowSource::WHOLE_ROW; }
    [[nodiscard]] bool hasSource() const override;
    [[nodiscard]] Source source(Store &store, const Order &order, qint64 limit) const override;

private:
    const PropertyTest m_test;
    const std::shared_ptr<const std::vector<qint64>> m_keys;
};

/// Stored places in the recent bucket.
class BucketCondition : public Condition
{
public:
    [[nodiscard]] bool test(const PlaceRow &row) const override;
    [[nodiscard]] int cost() const override { return 1; }
    [[nodiscard]] bool hasSource() const override { return true; }
    [[nodiscard]] Source source(Store &store, const Order &order, qint64 limit) const override;
    [[nodiscard]] bool hasSortedSource(const Order &order) const override;
    [[nodiscard]] std::unique_ptr<RowSource> sortedSource(Store &store, const Order &order) const override;
    [[nodiscard]] std::optional<qint64> count(Store &store) const override;
};

/// Stored places of a perimeter, and all places of other sources.
class PerimeterCondition : public Condition
{
public:
    explicit PerimeterCondition(orix_places_protocol::Perimeter perimeter)
        : m_perimeter(perimeter)
    {}
    [[nodiscard]] bool test(const PlaceRow &row) const override;
    [[nodiscard]] int cost() const override { return 1; }

private:
    const orix_places_protocol::Perimeter m_perimeter;
};

/// Stored places visible to the open channel, that is, saved and not private, and all places of other sources.
class OpenCondition : public Condition
{
public:
    explicit OpenCondition(Store &store);
    [[nodiscard]] bool test(const PlaceRow &row) const override;
    [[nodiscard]] int cost() const override { return 1; }
    [[nodiscard]] std::optional<qint64> count(Store &store) const override;

private:
    FacetTest m_isPrivate;
};

/// Stored places added through the owner's channel.
class OwnersCondition : public Condition
{
public:
    /// @param store must outlive the condition.
    explicit OwnersCondition(Store &store)
        : m_store(store)
        , m_hasGuests(store.hasGuests())
    {}
    [[nodiscard]] bool test(const PlaceRow &row) const override;
    [[nodiscard]] int cost() const override { return m_hasGuests ? RowSource::WHOLE_ROW : 0; }
    [[nodiscard]] bool passesAllStored() const override { return !m_hasGuests; }

private:
    Store &m_store;
    const bool m_hasGuests;
};

/// Stored places only.
class StoredCondition : public Condition
{
public:
    [[nodiscard]] bool test(const PlaceRow &row) const override { return row.isStored(); }
    [[nodiscard]] bool passesAllStored() const override { return true; }
};

/// The places that a search considers: stored places, and the results of other sources for the leaves of its own rule.
class OwnCondition : public Condition
{
public:
    /// @param candidates must outlive the condition. @param sources numbers of the leaves.
    OwnCondition(const Candidates &candidates, std::vector<int> sources)
        : m_candidates(candidates)
        , m_sources(std::move(sources))
    {}
    [[nodiscard]] bool test(const PlaceRow &row) const override;
    [[nodiscard]] bool passesAllStored() const override { return true; }

private:
    const Candidates &m_candidates;
    const std::vector<int> m_sources;
};

/// Places that another source gave for one leaf of the rule, or for any.
class FoundCondition : public Condition
{
public:
    static constexpr int ANY = -1;
    /// @param candidates must outlive the condition.
    FoundCondition(const Candidates &candidates, int source)
        : m_candidates(candidates)
        , m_source(source)
    {}
    [[nodiscard]] bool test(const PlaceRow &row) const override;
    [[nodiscard]] bool hasSource() const override { return true; }
    [[nodiscard]] Source source(Store &store, const Order &order, qint64 limit) const override;
    [[nodiscard]] bool hasSortedSource(const Order &order) const override;
    [[nodiscard]] std::unique_ptr<RowSource> sortedSource(Store &store, const Order &order) const override;

private:
    const Candidates &m_candidates;
    const int m_source;
};

} // namespace placesd
