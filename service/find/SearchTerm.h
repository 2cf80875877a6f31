// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "find/RowSource.h"
#include "text/Expansion.h"
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
    /// Places with the words, of which a find keeps the ids. With more it reads the texts of the places that the rest
    /// of its rule leaves.
    static constexpr int MOST_IDS = 16384;

    SearchTerm(Store &store, const QString &term, Reading reading, int mostIds = MOST_IDS);

    [[nodiscard]] const TermTest &test() const { return m_test; }

    [[nodiscard]] bool isIn(const PlaceRow &row) const;
    /// How long that takes, see Condition::cost().
    [[nodiscard]] int cost() const;
    /// Whether the index has to read much before it gives a place.
    [[nodiscard]] bool isSlowToOpen() const { return expressions().isSlowToOpen; }
    /// The stored places that have the words. Only for a term with words.
    [[nodiscard]] std::unique_ptr<RowSource> places() const;
    /// Their number, counted no further than the limit. What was counted once is known.
    [[nodiscard]] qint64 count(qint64 limit) const;

private:
    /// Whether a question to the index takes long enough, or is asked often enough, to keep what it gives.
    [[nodiscard]] bool isCollected() const { return !m_test.isOfNames() || isSlowToOpen(); }
    /// The ids of the stored places that the index gives, sorted; unset where there are many.
    [[nodiscard]] const std::optional<std::vector<qint64>> &ids() const;

    /// For the index of names, or of all texts; empty where nothing there can pass. Made when they are asked for.
    [[nodiscard]] const MatchExpressions &expressions() const;
    [[nodiscard]] QByteArray expression() const { return QByteArray::fromStdString(expressions().exact); }

    Store &m_store;
    const int m_mostIds;
    const TermTest m_test;
    mutable std::optional<MatchExpressions> m_expressions;
    mutable bool m_hasCollected = false;
    mutable std::optional<std::vector<qint64>> m_ids;
    mutable std::map<qint64, qint64> m_counts; ///< By limit.
};

/// All of a find, by what was typed.
using FindTerms = std::map<QString, std::shared_ptr<const SearchTerm>>;

} // namespace placesd
