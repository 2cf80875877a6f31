// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "Asker.h"

#include <places/AbstractPlace.h>

#include <QtCore/QThread>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <iostream>

namespace bench
{

using namespace vela::platform::places;

namespace
{

/// Requested rows per group; users see as many.
constexpr int ROWS = 5;
/// A request waits for the service's files up to its timeout, so this means minutes.
constexpr int MOST_WAITS = 100;

template <typename Rows>
int indexOfMeant(const Rows &rows, const SearchQuestion &question)
{
    const auto isMeant = [&](const auto &row) {
        return std::any_of(question.meant.begin(), question.meant.end(),
                           [&](const KnownPlace *place) { return place->isFoundAs(*row); });
    };
    return static_cast<int>(std::find_if(rows.begin(), rows.end(), isMeant) - rows.begin());
}

template <typename Rows>
bool count(const Rows &rows, const SearchQuestion &question, Hits &hits)
{
    const int index = indexOfMeant(rows, question);
    const bool isFound = index < std::min(rows.size(), ROWS);
    hits.first += isFound && index == 0 ? 1 : 0;
    hits.withinFive += isFound ? 1 : 0;
    return isFound;
}

/// The shown rows of both groups, without duplicates.
template <typename Rows>
Rows together(Rows upper, const Rows &lower)
{
    for (const auto &row : lower) {
        const auto isSame = [&](const auto &other) {
            return other->name() == row->name() && other->primaryCoordinates() == row->primaryCoordinates();
        };
        if (std::none_of(upper.begin(), upper.end(), isSame))
            upper.append(row);
    }
    return upper;
}

} // namespace

Asker::Rows Asker::find(ShownGroups::Group group, const QString &typed, std::vector<double> &times) const
{
    using std::chrono::steady_clock;
    Error::Type error = Error::Success;
    const steady_clock::time_point start = steady_clock::now();
    const Rows rows = m_manager.findPlacesByGroup(group, &error, nullptr, typed, 0, ROWS);
    times.push_back(std::chrono::duration<double, std::micro>(steady_clock::now() - start).count());
    if (error != Error::Success)
        std::cerr << "failed with " << error << ": group " << group << " \"" << qPrintable(typed) << "\"\n";
    return rows;
}

AskedSet Asker::ask(const QuestionSet &set) const
{
    AskedSet asked;
    asked.name = set.name;
    asked.asked = static_cast<int>(set.questions.size());
    asked.hasMeant = !set.questions.front().meant.empty();
    for (const SearchQuestion &question : set.questions) {
        const Rows upper = find(m_groups.upper, question.typed, asked.upperTimes.times);
        const Rows both = together(upper, find(m_groups.lower, question.typed, asked.lowerTimes.times));
        count(upper, question, asked.upper);
        if (!count(both, question, asked.both) && asked.hasMeant) {
            asked.misses.push_back(
                {question.typed, question.meant.front()->name, both.isEmpty() ? QString() : both.front()->name()});
        }
    }
    for (Answers *answers : {&asked.upperTimes, &asked.lowerTimes})
        std::sort(answers->times.begin(), answers->times.end());
    return asked;
}

void Asker::waitUntilReady() const
{
    Error::Type error = Error::Success;
    for (int i = 0; i < MOST_WAITS; ++i) {
        const Rows rows = m_manager.findPlacesByGroup(m_groups.lower, &error, nullptr, QStringLiteral("a"), 0, ROWS);
        if (error == Error::Success)
            return;
        QThread::sleep(1);
    }
    std::cerr << "quality_bench: the service cannot read its files: error " << error << "\n";
    std::exit(EXIT_FAILURE);
}

} // namespace bench
