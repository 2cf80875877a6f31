// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "ConcurrentReaders.h"

#include <places/Place.h>
#include <places/PlaceHeader.h>
#include <places/PlaceManager.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <random>
#include <thread>

namespace bench
{

using namespace vela::platform::places;
using std::chrono::steady_clock;

namespace
{

constexpr std::size_t READERS = 8;
constexpr std::chrono::seconds DURATION{3};

void fetchOne(const PlaceManager &manager, qint64 id)
{
    delete manager.getPlace(id);
}

void findRecent(const PlaceManager &manager)
{
    const auto found = manager.findRecentPlaces();
    qDeleteAll(found);
}

/// Times of all reads until `end`, in microseconds.
std::vector<double> readUntil(steady_clock::time_point end, int places, unsigned int seed)
{
    const PlaceManager manager;
    std::mt19937 random(seed);
    std::vector<double> times;
    for (auto now = steady_clock::now(); now < end;) {
        if (times.size() % 2 == 0)
            fetchOne(manager, 1 + static_cast<qint64>(random() % static_cast<unsigned int>(places)));
        else
            findRecent(manager);
        const auto before = std::exchange(now, steady_clock::now());
        times.push_back(std::chrono::duration<double, std::micro>(now - before).count());
    }
    return times;
}

/// Returns the number of acknowledged writes.
int writeUntil(steady_clock::time_point end, int places)
{
    const PlaceManager manager;
    int writes = 0;
    while (steady_clock::now() < end)
        writes += manager.usePlace(1 + writes % places) == Error::Success ? 1 : 0;
    return writes;
}

} // namespace

ReadersOutcome readConcurrently(int places, bool withWriter)
{
    const steady_clock::time_point end = steady_clock::now() + DURATION;
    std::array<std::vector<double>, READERS> times;
    std::array<std::thread, READERS> readers;
    for (unsigned int i = 0; i < READERS; ++i)
        readers[i] = std::thread([&times, i, end, places] { times[i] = readUntil(end, places, i); });
    ReadersOutcome outcome;
    if (withWriter)
        outcome.writesPerSecond = writeUntil(end, places) / std::chrono::duration<double>(DURATION).count();
    for (std::thread &reader : readers)
        reader.join();
    for (const std::vector<double> &some : times)
        outcome.reads.times.insert(outcome.reads.times.end(), some.begin(), some.end());
    std::sort(outcome.reads.times.begin(), outcome.reads.times.end());
    outcome.readsPerSecond =
        static_cast<double>(outcome.reads.times.size()) / std::chrono::duration<double>(DURATION).count();
    return outcome;
}

} // namespace bench
