// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "sources/TierSearch.h"

#include "sources/IndexRow.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace placesd
{

namespace
{

/// Number of rows in the first turn of each plan.
constexpr int FIRST_TURN = 64;
constexpr int LONGEST_TURN = std::numeric_limits<int>::max() / 2;

} // namespace

TierSearch::TierSearch(TierQuestion question)
    : m_question(std::move(question))
    , m_unsettled(m_question.order)
{}

std::vector<int64_t> TierSearch::page(int position, int count)
{
    const auto first = static_cast<std::size_t>(std::max(0, position));
    const std::size_t end = first + static_cast<std::size_t>(std::max(0, count));
    std::vector<int64_t> ids;
    for (int tier = m_question.firstTier; tier <= m_question.lastTier && ids.size() < end; ++tier) {
        for (const Ranked &result : fill(tier, end - ids.size()))
            ids.push_back(result.id);
    }
    ids.erase(ids.begin(), ids.begin() + static_cast<std::ptrdiff_t>(std::min(first, ids.size())));
    return ids;
}

TierSearch::Results TierSearch::fill(int tier, std::size_t wanted)
{
    const StatementPtr candidates = m_question.candidates ? m_question.candidates(tier) : nullptr;
    Results best;
    for (int turn = FIRST_TURN;; turn = std::min(2 * turn, LONGEST_TURN)) {
        if (candidates && rank(tier, *candidates, turn, wanted, best)) {
            std::sort_heap(best.begin(), best.end(), m_question.order);
            return best;
        }
        if (walk(tier, turn, wanted)) {
            Results walked = std::move(m_settled[tier]);
            walked.resize(std::min(walked.size(), wanted));
            return walked;
        }
    }
}

bool TierSearch::rank(int tier, SQLite::Statement &candidates, int rows, std::size_t wanted, Results &best) const
{
    const ResultOrder &order = m_question.order;
    for (int i = 0; i < rows; ++i) {
        if (!candidates.executeStep())
            return true;
        const IndexRow row(candidates);
        if (m_question.tierOf(row) != tier)
            continue;
        Ranked ranked = order.rank(row);
        const bool isFull = best.size() == wanted;
        if (isFull && !order(ranked, best.front()))
            continue;
        if (isFull) {
            std::pop_heap(best.begin(), best.end(), order);
            best.pop_back();
        }
        best.push_back(std::move(ranked));
        std::push_heap(best.begin(), best.end(), order);
    }
    return false;
}

bool TierSearch::walk(int tier, int rows, std::size_t wanted)
{
    const ResultOrder &order = m_question.order;
    SQLite::Statement &statement = *m_question.walk;
    const Results &settled = m_settled[tier];
    for (int i = 0; i < rows && settled.size() < wanted; ++i) {
        if (statement.isDone() || !statement.executeStep()) {
            settle(nullptr);
            return true;
        }
        const IndexRow row(statement);
        const Ranked ranked = order.rank(row);
        if (const int found = m_question.tierOf(row); found >= tier)
            m_unsettled.emplace(ranked, found);
        const Ranked passed = order.passedAt(ranked);
        settle(&passed);
    }
    return settled.size() >= wanted;
}

void TierSearch::settle(const Ranked *passed)
{
    while (!m_unsettled.empty()) {
        const auto first = m_unsettled.begin();
        if (passed && !m_question.order(first->first, *passed))
            return;
        m_settled[first->second].push_back(first->first);
        m_unsettled.erase(first);
    }
}

} // namespace placesd
