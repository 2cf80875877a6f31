// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "Report.h"

#include "Table.h"

#include <algorithm>
#include <cstdio>

namespace bench
{

namespace
{

constexpr double BYTES_LIMIT = 1100;
/// Maximum ratio of a fetch by id to a bare exchange and a bare read of a row together.
constexpr double FETCH_LIMIT = 1.3;

bool isAbove(double value, double limit)
{
    return limit > 0 && value > limit;
}

/// The answers to the query with this name.
const Answers &answersTo(const AskedStore &store, const char *name)
{
    const std::vector<Question> &questions = store.questions->all();
    const auto question =
        std::find_if(questions.begin(), questions.end(), [name](const Question &each) { return each.name == name; });
    return store.answers[static_cast<std::size_t>(question - questions.begin())];
}

Table::Cells cells(const Question &question, const Answers &answers, double fetch, const Answers *smaller)
{
    if (answers.found < 0)
        return {question.name, "failed", "-", "-", "-", "-", "-", "-", "-", ""};
    const double ratio = answers.median() / fetch;
    const double growth = smaller && smaller->found >= 0 ? answers.median() / smaller->median() : 0;
    const bool above = isAbove(ratio, question.limit.ratio) || isAbove(growth, question.limit.growth);
    return {question.name,
            timeText(answers.median()),
            timeText(answers.quantile(0.95)),
            std::to_string(answers.times.size()),
            std::to_string(answers.found),
            numberText(ratio, 2),
            numberText(question.limit.ratio, 0),
            numberText(growth, 2),
            numberText(question.limit.growth, 1),
            above ? "above" : ""};
}

void printQuestions(const AskedStore &store, const AskedStore *smaller, bool asMarkdown)
{
    Table::Cells head{"what", "median", "95 %", "asked", "found", "ratio", "limit", "growth", "limit", ""};
    if (!store.other.empty())
        head.push_back("PostgreSQL");
    Table table(std::move(head));
    const double fetch = answersTo(store, FETCH).median();
    const std::vector<Question> &questions = store.questions->all();
    for (std::size_t i = 0; i < questions.size(); ++i) {
        Table::Cells row = cells(questions[i], store.answers[i], fetch, smaller ? &smaller->answers[i] : nullptr);
        const auto median = store.other.find(questions[i].name);
        if (!store.other.empty())
            row.push_back(median == store.other.end() ? "-" : timeText(median->second));
        table.add(std::move(row));
    }
    table.print(asMarkdown);
}

void printFigures(const AskedStore &store, bool asMarkdown)
{
    const MadeStore &made = store.made;
    const double bare = answersTo(store, BARE_CHANNEL).median() + answersTo(store, BARE_ROW).median();
    const double ratio = answersTo(store, FETCH).median() / bare;
    Table table({"what", "value", "limit", ""});
    table.add({"fetch by id / bare channel and bare SQLite row", numberText(ratio, 2), numberText(FETCH_LIMIT, 1),
               isAbove(ratio, FETCH_LIMIT) ? "above" : ""});
    table.add({"bytes a place on the disk", numberText(made.bytesAPlace, 0), numberText(BYTES_LIMIT, 0),
               isAbove(made.bytesAPlace, BYTES_LIMIT) ? "above" : ""});
    table.add({"seconds to make the store", numberText(made.seconds, 1), "-", ""});
    table.print(asMarkdown);
}

void printReaders(const AskedStore &store, bool asMarkdown)
{
    const ReadersOutcome &alone = store.readersAlone;
    const ReadersOutcome &together = store.readersBesideWriter;
    Table table({"eight readers", "reads/s", "median", "95 %", "writes/s"});
    const auto add = [&table](const char *name, const ReadersOutcome &outcome) {
        table.add({name, numberText(outcome.readsPerSecond, 0), timeText(outcome.reads.median()),
                   timeText(outcome.reads.quantile(0.95)), numberText(outcome.writesPerSecond, 0)});
    };
    add("alone", alone);
    add("with one writer", together);
    table.add({"ratio", numberText(together.readsPerSecond / alone.readsPerSecond, 2),
               numberText(together.reads.median() / alone.reads.median(), 2),
               numberText(together.reads.quantile(0.95) / alone.reads.quantile(0.95), 2), ""});
    table.print(asMarkdown);
}

} // namespace

void printReport(const AskedStore &store, const AskedStore *smaller, bool asMarkdown)
{
    std::printf(asMarkdown ? "### %d places\n\n" : "== %d places\n\n", store.made.places);
    printQuestions(store, smaller, asMarkdown);
    printFigures(store, asMarkdown);
    printReaders(store, asMarkdown);
}

} // namespace bench
