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

/// A term of a find with its current reading.
class SearchTerm
{
public:
    /// Maximum number of ids of matching places that a find keeps. With more, it reads the texts of the places that
    /// pass the rest of the rule.
    static constexpr int MOST_IDS = 16384;

    SearchTerm(Store &store, const QString &term, Reading reading, int mostIds = MOST_IDS);

    [[nodiscard]] const TermTest &test() const { return m_test; }

    [[nodiscard]] bool isIn(const PlaceRow &row) const;
    /// Cost of a test; see Condition::cost().
    [[nodiscard]] int cost() const;
    /// Whether the index reads much before it gives a place.
    [[nodiscard]] bool isSlowToOpen() const { return expressions().isSlowToOpen; }
    /// The stored places that contain the words. Only for a term with words.
    [[nodiscard]] std::unique_ptr<RowSource> places() const;
    /// Their number, counted up to the limit. Counts are cached.
    [[nodiscard]] qint64 count(qint64 limit) const;

private:
    /// Whether the index is slow enough, or asked often enough, to cache its results.
    [[nodiscard]] bool isCollected() const { return !m_test.isOfNames() || isSlowToOpen(); }
    /// The sorted ids of the matching stored places; unset when there are too many.
    [[nodiscard]] const std::optional<std::vector<qint64>> &ids() const;

    /// Expressions for the index of names or of all texts; empty when no text can match. Built on first use.
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

/// All terms of a find, by the typed text.
using FindTerms = std::map<QString, std::shared_ptr<const SearchTerm>>;

} // namespace placesd
