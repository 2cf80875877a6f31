// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "Rounds.h"

#include <algorithm>
#include <chrono>
#include <iostream>
#include <numeric>

namespace bench
{

namespace
{

constexpr int ROUNDS = 15;
/// Maximum number of runs of a query in a round, and the time after which it is not run again.
constexpr int BURST = 20;
constexpr double BURST_TIME = 10e3; // microseconds
/// Time after which a query is left out of the other rounds.
constexpr double QUESTION_TIME = 15e6; // microseconds
/// Number of queries between two runs of the baselines, on which all ratios depend.
constexpr std::size_t BASELINE_INTERVAL = 8;

void askOnce(const Question &question, Answers &answers)
{
    using std::chrono::steady_clock;
    const steady_clock::time_point start = steady_clock::now();
    const int found = question.ask();
    answers.times.push_back(std::chrono::duration<double, std::micro>(steady_clock::now() - start).count());
    if (found < 0)
        answers.found = found;
}

void askInRound(const Question &question, Answers &answers)
{
    if (answers.found < 0 || std::accumulate(answers.times.begin(), answers.times.end(), 0.0) > QUESTION_TIME)
        return;
    double spent = 0;
    for (int i = 0; i < BURST && spent < BURST_TIME; ++i) {
        askOnce(question, answers);
        spent += answers.times.back();
    }
}

void askRound(AskedStore &store)
{
    const std::vector<Question> &questions = store.questions->all();
    const auto askRange = [&](std::size_t from, std::size_t to) {
        for (std::size_t i = from; i < to; ++i)
            askInRound(questions[i], store.answers[i]);
    };
    store.served->select();
    for (std::size_t from = BASELINES; from < questions.size(); from += BASELINE_INTERVAL) {
        askRange(0, BASELINES);
        askRange(from, std::min(from + BASELINE_INTERVAL, questions.size()));
    }
}

/// Runs every query once without measuring: fills caches and reads sources.
void warmUp(AskedStore &store)
{
    store.served->select();
    for (const Question &question : store.questions->all()) {
        store.answers.push_back({question.ask()});
        if (store.answers.back().found < 0)
            std::cerr << "failed: " << question.name << "\n";
    }
}

} // namespace

void ask(std::vector<AskedStore> &stores)
{
    for (AskedStore &store : stores)
        warmUp(store);
    for (int round = 0; round < ROUNDS; ++round) {
        std::cerr << "\rround " << round + 1 << " of " << ROUNDS << std::flush;
        for (AskedStore &store : stores)
            askRound(store);
    }
    std::cerr << "\n";
    for (AskedStore &store : stores) {
        for (Answers &answers : store.answers)
            std::sort(answers.times.begin(), answers.times.end());
    }
}

} // namespace bench
