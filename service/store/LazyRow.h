// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "store/StatementPool.h"
#include "store/StoredRow.h"

#include <optional>
#include <string_view>

namespace placesd
{

/// A stored place with known id, and often known name key. The rest of the row is fetched on demand; a missing row is a
/// damaged database and throws SQLite::Exception.
class LazyRow : public PlaceRow
{
public:
    explicit LazyRow(Store &store);

    /// @param nameKey as stored, valid while the row stays at this place; unset when it is unknown.
    void moveTo(qint64 id, std::optional<std::string_view> nameKey = {});

    [[nodiscard]] qint64 id() const override { return m_id; }
    [[nodiscard]] bool isStored() const override { return true; }
    [[nodiscard]] std::string_view nameKey() const override { return m_nameKey ? *m_nameKey : whole().nameKey(); }
    [[nodiscard]] std::string_view sortKey() const override { return whole().sortKey(); }
    [[nodiscard]] vela::system::SecurityPerimeter::Type perimeter() const override { return whole().perimeter(); }
    [[nodiscard]] int persistenceMask() const override { return whole().persistenceMask(); }
    [[nodiscard]] qint64 usageCount() const override { return whole().usageCount(); }
    [[nodiscard]] qint64 lastUsedTime() const override { return whole().lastUsedTime(); }
    [[nodiscard]] qint64 creationTime() const override { return whole().creationTime(); }
    [[nodiscard]] qint64 updateTime() const override { return whole().updateTime(); }
    [[nodiscard]] vela::platform::places::Coordinates position() const override { return whole().position(); }
    [[nodiscard]] bool passes(const FacetTest &test) const override { return whole().passes(test); }
    [[nodiscard]] bool passes(const PropertyTest &test) const override { return whole().passes(test); }
    [[nodiscard]] bool passes(const TermTest &test) const override
    {
        return test.isOfNames() ? test(nameKey()) : whole().passes(test);
    }

private:
    [[nodiscard]] const StoredRow &whole() const;

    const StatementPool::Lease m_lookup;
    const StoredRow m_row;
    qint64 m_id = 0;
    std::optional<std::string_view> m_nameKey;
    mutable bool m_isFetched = false;
};

} // namespace placesd
