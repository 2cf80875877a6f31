// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "store/PlaceRow.h"

#include <SQLiteCpp/SQLiteCpp.h>

namespace placesd
{

class Store;

/// The current row of a statement that selects all columns of the table `place` in order. The statement must outlive
/// the row.
class StoredRow : public PlaceRow
{
public:
    StoredRow(Store &store, SQLite::Statement &statement)
        : m_store(store)
        , m_statement(statement)
    {}

    [[nodiscard]] qint64 id() const override;
    [[nodiscard]] bool isStored() const override { return true; }
    [[nodiscard]] std::string_view nameKey() const override;
    [[nodiscard]] std::string_view sortKey() const override;
    [[nodiscard]] vela::system::SecurityPerimeter::Type perimeter() const override;
    [[nodiscard]] int persistenceMask() const override;
    [[nodiscard]] qint64 usageCount() const override;
    [[nodiscard]] qint64 lastUsedTime() const override;
    [[nodiscard]] qint64 creationTime() const override;
    [[nodiscard]] qint64 updateTime() const override;
    [[nodiscard]] vela::platform::places::Coordinates position() const override;
    [[nodiscard]] bool passes(const FacetTest &test) const override;
    /// Reads the whole record of the place.
    [[nodiscard]] bool passes(const PropertyTest &test) const override;
    /// Reads the record, unless the test is of names.
    [[nodiscard]] bool passes(const TermTest &test) const override;

    /// The packed facet numbers of the place.
    [[nodiscard]] std::string_view facets() const;

private:
    enum Column : int;
    [[nodiscard]] qint64 number(Column column) const;
    [[nodiscard]] std::string_view bytes(Column column) const;

    Store &m_store;
    SQLite::Statement &m_statement;
};

} // namespace placesd
