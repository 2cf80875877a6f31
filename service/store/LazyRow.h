// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "store/StoredRow.h"

namespace placesd
{

/// The place that a statement is at, of which it selects the id and the key of the name. The rest of the row is fetched
/// when it is asked for. The statement outlives the row.
class LazyRow : public PlaceRow
{
public:
    LazyRow(Store &store, SQLite::Statement &statement);

    /// To be called before the statement goes on.
    void forget() { m_isFetched = false; }

    [[nodiscard]] qint64 id() const override;
    [[nodiscard]] bool isStored() const override { return true; }
    [[nodiscard]] std::string_view nameKey() const override;
    [[nodiscard]] std::string_view sortKey() const override { return whole().sortKey(); }
    [[nodiscard]] int persistenceMask() const override { return whole().persistenceMask(); }
    [[nodiscard]] qint64 usageCount() const override { return whole().usageCount(); }
    [[nodiscard]] qint64 lastUsedTime() const override { return whole().lastUsedTime(); }
    [[nodiscard]] qint64 creationTime() const override { return whole().creationTime(); }
    [[nodiscard]] qint64 updateTime() const override { return whole().updateTime(); }
    [[nodiscard]] vela::platform::places::Coordinates position() const override { return whole().position(); }
    [[nodiscard]] bool passes(const FacetTest &test) const override { return whole().passes(test); }
    [[nodiscard]] bool passes(const PropertyTest &test) const override { return whole().passes(test); }

private:
    [[nodiscard]] const StoredRow &whole() const;

    SQLite::Statement &m_statement;
    const StatementPool::Lease m_lookup;
    const StoredRow m_row;
    mutable bool m_isFetched = false;
};

} // namespace placesd
