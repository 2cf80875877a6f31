// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "PlaceAdder.h"

#include <places/PlaceManager.h>

#include <system_error>
#include <utility>

namespace tool
{

using namespace formats;
using namespace formats;
using namespace places;

namespace
{

/// Additions in flight.
constexpr std::size_t THREADS = 48;
/// Maximum number of members that are read but not settled. More than threads, so that no thread waits for the reader.
constexpr std::size_t QUEUE_LENGTH = 192;

} // namespace

PlaceAdder::PlaceAdder(Settle settle)
    : m_settle(std::move(settle))
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
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        Item &item = m_items.emplace_back();
        item.read = std::move(read);
        item.isDone = !isPlace;
        if (isPlace)
            m_unstarted.push_back(&item);
    }
    if (!isPlace)
        return true;
    m_isWork.notify_one();
    if (m_threads.size() < THREADS)
        startThread();
    return true;
}

/// Failing to start a thread is no error while another one runs.
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
    const PlaceManager manager;
    std::unique_lock<std::mutex> lock(m_mutex);
    for (;;) {
        m_isWork.wait(lock, [this] { return m_isEnded || !m_unstarted.empty(); });
        if (m_isEnded)
            return;
        Item &item = *m_unstarted.front();
        m_unstarted.pop_front();
        lock.unlock();
        item.outcome = manager.addPlace(item.read.place.get());
        item.reason = Error::reason(item.outcome);
        lock.lock();
        item.isDone = true;
        if (&item == &m_items.front())
            m_isFrontDone.notify_one();
    }
}

void PlaceAdder::settleUntil(std::size_t most)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    for (;;) {
        if (m_items.size() > most)
            m_isFrontDone.wait(lock, [this] { return m_items.front().isDone; });
        if (m_items.empty() || !m_items.front().isDone)
            return;
        const Item item = std::move(m_items.front());
        m_items.pop_front();
        lock.unlock();
        if (!m_settle(item.read, item.outcome, item.reason))
            stop();
        lock.lock();
    }
}

void PlaceAdder::stop()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_isStopped = true;
    while (!m_unstarted.empty()) {
        if (m_unstarted.back() == &m_items.back())
            m_unstarted.pop_back();
        m_items.pop_back();
    }
}

} // namespace tool
