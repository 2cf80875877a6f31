// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "find/SearchTerm.h"

#include "find/FindSql.h"
#include "store/SqlFunctions.h"
#include "store/Store.h"

#include <algorithm>

namespace placesd
{

namespace sql = find_sql;

namespace
{

/// Cost of building the key of all texts of a stored place; see Condition::cost().
constexpr int COST_OF_TEXT_KEY = 20 * RowSource::WHOLE_ROW;

/// Whether no name contains a word. A word of the vocabulary occurs; the vocabulary lacks words written by other
/// processes, so other words are looked up in the index, which is fast for a missing word.
bool isInNoName(Store &store, const Wording::Word &word)
{
    const CorrectionSource &known = store.vocabulary();
    if (std::any_of(word.begin(), word.end(),
                    [&known](const Spelling &spelling) { return known.hasPrefix(spelling.text); }))
        return false;
    const auto row = store.statements().take(sql::COUNT_SOME_WITH_WORDS);
    bindAll(*row, {QByteArray::fromStdString(Wording({word}).expression()), 1}, 1);
    row->executeStep();
    return row->getColumn(0).getInt() == 0;
}

/// Expressions for the index of names.
MatchExpressions nameExpressions(Store &store, const Reading &reading)
{
    MatchExpressions expressions;
    for (const Wording &wording : reading.wordings) {
        for (const Wording::Word &word : wording.words()) {
            if (wording.words().size() > 1 && isInNoName(store, word))
                return {};
            expressions.isSlowToOpen =
                expressions.isSlowToOpen || std::any_of(word.begin(), word.end(), placesd::isSlowToOpen);
        }
        if (!wording.isEmpty())
            expressions.exact = reading.expression();
    }
    return expressions;
}

} // namespace

SearchTerm::SearchTerm(Store &store, const QString &term, Reading reading, int mostIds)
    : m_store(store)
    , m_mostIds(mostIds)
    , m_test(term, std::move(reading))
{}

const MatchExpressions &SearchTerm::expressions() const
{
    if (!m_expressions) {
        const Reading &reading = m_test.reading();
        m_expressions =
            reading.inNames ? nameExpressions(m_store, reading) : matchExpressions(reading, m_store.vocabulary());
    }
    return *m_expressions;
}

const std::optional<std::vector<qint64>> &SearchTerm::ids() const
{
    if (m_hasCollected)
        return m_ids;
    m_hasCollected = true;
    std::vector<qint64> ids;
    const auto row = m_store.statements().take(m_test.isOfNames() ? sql::SOME_WITH_WORDS : sql::SOME_IN_TEXTS);
    bindAll(*row, {expression(), m_mostIds + 1}, 1);
    while (!expressions().exact.empty() && row->executeStep())
        ids.push_back(row->getColumn(0).getInt64());
    if (ids.size() <= static_cast<std::size_t>(m_mostIds)) {
        std::sort(ids.begin(), ids.end());
        m_ids = std::move(ids);
    }
    return m_ids;
}

bool SearchTerm::isIn(const PlaceRow &row) const
{
    if (m_test.isOfNames() || !row.isStored() || !ids())
        return row.passes(m_test);
    return std::binary_search(m_ids->begin(), m_ids->end(), row.id());
}

int SearchTerm::cost() const
{
    return m_test.isOfNames() || ids() ? 0 : COST_OF_TEXT_KEY;
}

std::unique_ptr<RowSource> SearchTerm::places() const
{
    if (isCollected() && ids())
        return std::make_unique<IdSource>(m_store, *m_ids);
    const char *statement = m_test.isOfNames() ? sql::WITH_WORDS : sql::IN_TEXTS;
    return std::make_unique<StatementSource>(m_store, statement, std::vector<QVariant>{expression()});
}

qint64 SearchTerm::count(qint64 limit) const
{
    if (expressions().exact.empty())
        return 0;
    if (isCollected() && ids())
        return std::min(limit, static_cast<qint64>(m_ids->size()));
    if (isCollected() && limit <= m_mostIds)
        return limit;
    const auto known = m_counts.find(limit);
    if (known != m_counts.end())
        return known->second;
    const char *statement = m_test.isOfNames() ? sql::COUNT_SOME_WITH_WORDS : sql::COUNT_SOME_IN_TEXTS;
    const auto row = m_store.statements().take(statement);
    bindAll(*row, {expression(), limit}, 1);
    row->executeStep();
    return m_counts[limit] = row->getColumn(0).getInt64();
}

} // namespace placesd
