// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "find/RowSource.h"
#include "text/TermTest.h"

#include <map>
#include <memory>
#include <optional>
#include <vector>

namespace placesd
{

/// A term by whose words a find looks for places, as it is read at the moment.
class SearchTerm
{
public:
    SearchTerm(Store &store, const QString &term, Reading reading);

    [[nodiscard]] const TermTest &test() const { return m_test; }

    [[nodiscard]] bool isIn(const PlaceRow &row) const;
    /// How long that takes, see Condition::cost().
    [[nodiscard]] int cost() const;
    /// The stored places that have the words. Only for a term with words.
    [[nodiscard]] std::unique_ptr<RowSource> places() const;
    /// Their number, counted no further than the limit. What was counted once is known.
    [[nodiscard]] qint64 count(qint64 limit) const;

private:
    /// The ids of the stored places whose texts have the words, sorted; unset where there are many.
    [[nodiscard]] const std::optional<std::vector<qint64>> &ids() const;

    Store &m_store;
    const QByteArray m_expression; ///< For the index of names, or of all texts; empty where nothing there can pass.
    const TermTest m_test;
    mutable bool m_isCollected = false;
    mutable std::optional<std::vector<qint64>> m_ids;
    mutable std::map<qint64, qint64> m_counts; ///< By limit.
};

/// All of a find, by what was typed.
using FindTerms = std::map<QString, std::shared_ptr<const SearchTerm>>;

} // namespace placesd
