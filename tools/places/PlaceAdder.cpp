// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "PlaceAdder.h"

#include "Interruption.h"

#include <system_error>
#include <utility>

namespace tool
{

using namespace formats;

namespace
{

/// Maximum number of members in flight.
constexpr std::size_t THREADS = 48;
/// Maximum number of members that are read but not settled. Larger than THREADS, so that no thread waits for the
/// reader.
constexpr std::size_t QUEUE_LENGTH = 192;

} // namespace

PlaceAdder::PlaceAdder(const MemberImporter &importer, Settle settle)
    : m_importer(importer)
    , m_settle(std::move(settle))
{}

PlaceAdder::~PlaceAdder()
{
    stop();
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_isEnded = true;
    }
    m_isWork.notify_all();
    for (std::thread &thread : m_threads)
        thread.join();
}

bool PlaceAdder::add(ReadPlace read)
{
    settleUntil(QUEUE_LENGTH - 1);
    if (m_isStopped)
        return false;
    const bool isPlace = read.place != nullptr;
    const MemberKey key = isPlace ? MemberKey::of(*read.place) : MemberKey();
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        Item &item = m_items.emplace_back();
        item.read = std::move(read);
        item.key = key;
        if (isPlace)
            follow(item);
        else
            item.stage = Stage::Done;
    }
    if (!isPlace)
        return true;
    m_isWork.notify_one();
    if (m_threads.size() < THREADS)
        startThread();
    return true;
}

void PlaceAdder::follow(Item &item)
{
    for (Item &before : m_items) {
        const bool isUnderWay = before.stage == Stage::Waiting || before.stage == Stage::InFlight;
        if (&before == &item || !isUnderWay || !m_importer.mayBeSame(before.key, item.key))
            continue;
        before.followers.push_back(&item);
        ++item.earlier;
    }
    if (item.earlier == 0)
        m_ready.push_back(&item);
}

/// Failing to start a thread is not an error while another one runs.
void PlaceAdder::startThread()
{
    try {
        m_threads.emplace_back([this] { run(); });
    } catch (const std::system_error &) {
        if (m_threads.empty())
            throw;
    }
}

void PlaceAdder::finish()
{
    settleUntil(0);
}

void PlaceAdder::run()
{
    Interruption::leaveToOtherThreads();
    std::unique_lock<std::mutex> lock(m_mutex);
    for (;;) {
        m_isWork.wait(lock, [this] { return m_isEnded || !m_ready.empty(); });
        if (m_isEnded)
            return;
        Item &item = *m_ready.front();
        m_ready.pop_front();
        item.stage = Stage::InFlight;
        lock.unlock();
        item.result = m_importer.import(*item.read.place, item.key);
        lock.lock();
        complete(item);
    }
}

void PlaceAdder::complete(Item &item)
{
    item.stage = Stage::Done;
    for (Item *follower : item.followers) {
        if (--follower->earlier > 0 || follower->stage != Stage::Waiting)
            continue;
        m_ready.push_back(follower);
        m_isWork.notify_one();
    }
    if (&item == &m_items.front())
        m_isFrontDone.notify_one();
}

void PlaceAdder::settleUntil(std::size_t most)
{
    const auto isFrontDone = [this] {
        return m_items.front().stage == Stage::Done || m_items.front().stage == Stage::Dropped;
    };
    std::unique_lock<std::mutex> lock(m_mutex);
    for (;;) {
        if (m_items.size() > most)
            m_isFrontDone.wait(lock, isFrontDone);
        if (m_items.empty() || !isFrontDone())
            return;
        const Item item = std::move(m_items.front());
        m_items.pop_front();
        lock.unlock();
        if (item.stage == Stage::Done && !m_settle(item.read, item.result))
            stop();
        lock.lock();
    }
}

void PlaceAdder::stop()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_isStopped = true;
    m_ready.clear();
    bool hasDropped = false;
    for (Item &item : m_items) {
        if (item.stage != Stage::Waiting && (item.read.place || !hasDropped))
            continue;
        item.stage = Stage::Dropped;
        hasDropped = true;
    }
}

} // namespace tool
