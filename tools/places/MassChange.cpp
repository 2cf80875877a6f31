// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "MassChange.h"

#include <algorithm>
#include <atomic>
#include <system_error>
#include <thread>

namespace tool
{

using namespace places;

namespace
{

/// Maximum number of changes in flight.
constexpr std::size_t THREADS = 48;

} // namespace

Change Change::of(Error::Type error)
{
    return {error, Error::reason(error), {}, error == Error::Success};
}

std::vector<Change> changeAll(const std::vector<qint64> &ids, const ChangePlace &change)
{
    std::vector<Change> changes(ids.size());
    std::atomic<std::size_t> next = 0;
    const auto work = [&] {
        for (std::size_t i = next++; i < ids.size(); i = next++)
            changes[i] = change(ids[i]);
    };
    std::vector<std::thread> threads;
    try {
        while (threads.size() + 1 < std::min(THREADS, ids.size()))
            threads.emplace_back(work);
    } catch (const std::system_error &) {
        // The threads that started, and this one, are enough.
    }
    work();
    for (std::thread &thread : threads)
        thread.join();
    return changes;
}

} // namespace tool
