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

/// Gives stored places row by row, as far as they are asked for. Throws SQLite::Exception.
class RowSource
{
public:
    RowSource() = default;
    RowSource(const RowSource &) = delete;
    RowSource &operator=(const RowSource &) = delete;
    virtual ~RowSource() = default;

    /// The next place, valid until the call after; null at the end.
    virtual const PlaceRow *next() = 0;
    /// How long that takes: 1 for a name in an index.
    [[nodiscard]] virtual int cost() const { return WHOLE_ROW; }

    /// A row that lies anywhere in the table, or in the R*Tree.
    static constexpr int WHOLE_ROW = 5;
};

/// The rows of a statement that selects places.
class StatementSource : public RowSource
{
public:
    /// @param sql a named statement. @param bindings its parameters, in their order.
    StatementSource(Store &store, const char *sql, const std::vector<QVariant> &bindings = {});
    const PlaceRow *next() override;

private:
    StatementPool::Lease m_statement;
    StoredRow m_row;
};

/// The rows of a statement that selects ids and keys of names, which are enough for many conditions. The rest of a row
/// is fetched when it is asked for.
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

/// Places by their ids; those that are not stored are left out.
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

/// One source after the other, each place once.
class ChainedSource : public RowSource
{
public:
    enum class Overlap
    {
        Possible,
        None ///< No two sources give the same place, and none gives one twice.
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

/// Several sources that are sorted alike, merged, each place once.
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
