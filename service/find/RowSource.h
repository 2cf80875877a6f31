// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "find/Order.h"
#include "store/LazyRow.h"
#include "store/StoredRow.h"

#include <QtCore/QVariant>

#include <memory>
#include <unordered_set>
#include <vector>

namespace placesd
{

class Store;

/// Lists stored places row by row. Throws SQLite::Exception.
class RowSource
{
public:
    RowSource() = default;
    RowSource(const RowSource &) = delete;
    RowSource &operator=(const RowSource &) = delete;
    virtual ~RowSource() = default;

    /// The next place, valid until the next call; null at the end.
    virtual const PlaceRow *next() = 0;
    /// Cost of next(), in units of reading a name in an index.
    [[nodiscard]] virtual int cost() const { return WHOLE_ROW; }

    /// Cost of a row at any position of the table or the R*Tree.
    static constexpr int WHOLE_ROW = 5;
};

/// Rows of a statement that selects places.
class StatementSource : public RowSource
{
public:
    /// @param sql a named statement. @param bindings its parameters in order.
    StatementSource(Store &store, const char *sql, const std::vector<QVariant> &bindings = {});
    const PlaceRow *next() override;

private:
    StatementPool::Lease m_statement;
    StoredRow m_row;
};

/// Rows of a statement that selects ids and name keys, which suffice for many conditions. The rest of a row is fetched
/// on demand.
class NameSource : public RowSource
{
public:
    /// @param sql a named statement without parameters.
    NameSource(Store &store, const char *sql);
    const PlaceRow *next() override;
    [[nodiscard]] int cost() const override { return 1; }

private:
    StatementPool::Lease m_statement;
    LazyRow m_row;
};

/// Places by id; ids that are not stored are skipped.
class IdSource : public RowSource
{
public:
    IdSource(Store &store, std::vector<qint64> ids);
    const PlaceRow *next() override;

private:
    StatementPool::Lease m_statement;
    StoredRow m_row;
    const std::vector<qint64> m_ids;
    std::size_t m_next = 0;
};

/// Several sources, one after the other, without duplicates.
class ChainedSource : public RowSource
{
public:
    enum class Overlap
    {
        Possible,
        None ///< The sources have no duplicates.
    };
    explicit ChainedSource(std::vector<std::unique_ptr<RowSource>> sources, Overlap overlap = Overlap::Possible)
        : m_sources(std::move(sources))
        , m_overlap(overlap)
    {}
    const PlaceRow *next() override;
    [[nodiscard]] int cost() const override;

private:
    const std::vector<std::unique_ptr<RowSource>> m_sources;
    const Overlap m_overlap;
    std::size_t m_current = 0;
    std::unordered_set<qint64> m_given;
};

/// Several sources in the same order, merged, without duplicates.
class MergedSource : public RowSource
{
public:
    MergedSource(std::vector<std::unique_ptr<RowSource>> sources, const Order &order);
    const PlaceRow *next() override;

private:
    struct Head
    {
        std::unique_ptr<RowSource> source;
        const PlaceRow *row = nullptr; ///< Null at the end of the source.
        Order::Key key;
    };
    void advance(Head &head);

    const Order &m_order;
    std::vector<Head> m_heads;
    qint64 m_given;
};

} // namespace placesd
