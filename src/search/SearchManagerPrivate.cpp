// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "search/SearchManagerPrivate.h"

#include "places/AbstractPlace.h"
#include "places/InternalPlaceManager.h"
#include "search/SearchResultPrivate.h"

#include <algorithm>
#include <cstdio>

namespace vela::platform::places
{

namespace
{

constexpr int DEBOUNCE_MILLISECONDS = 150;
constexpr int MAX_SUGGESTIONS = 10;

// These two go to standard output, unlike the log messages of the other managers: this is defined behaviour.
constexpr WorkerThreads::Reports REPORTS = {
    [](int error) { std::printf("SearchManagerP: dequeue cond wait failed %d.\n", error); },
    [](int error) { std::printf("SearchManagerP: closing cond wait failed %d.\n", error); },
};

} // namespace

SearchManagerPrivate::SearchManagerPrivate(QObject *parent)
    : QObject(parent)
    , m_queue(std::make_shared<Queue>(
          REPORTS, findByGroup, [this](const Job &job, const Answer &answer) { return dataAvailable(job, answer); }))
    , m_timer(this)
{
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer); // a coarse timer may be early
    m_timer.setInterval(DEBOUNCE_MILLISECONDS);
    connect(&m_timer, &QTimer::timeout, this, &SearchManagerPrivate::onTimedOut);
    m_queue->start();
}

SearchManagerPrivate::~SearchManagerPrivate()
{
    close();
}

void SearchManagerPrivate::search(const QString &term, const Coordinates &centre, int searchId,
                                  const QList<SearchResultGroup::Type> &groups, int offset, int limit,
                                  bool excludeFavorites)
{
    const std::shared_ptr<Queue> queue = m_queue; // a slot of started() may destroy this object
    const Queue::Lock lock(*queue);
    queue->clear();
    m_searchId = searchId;
    for (const SearchResultGroup::Type group : groups) {
        Job job{0, group, term, centre, offset, limit, searchId, excludeFavorites};
        if (group == SearchResultGroup::Suggestions) {
            job.limit = std::min(limit, MAX_SUGGESTIONS);
            queue->delay(job);
            m_timer.start();
        } else {
            queue->add(job);
        }
    }
    Q_EMIT started(searchId);
    queue->wake();
}

void SearchManagerPrivate::onTimedOut()
{
    const Queue::Lock lock(*m_queue);
    m_queue->releaseDelayed();
}

void SearchManagerPrivate::findByGroup(const Job &job, Answer &answer)
{
    const InternalPlaceManager manager;
    const auto find = job.excludeFavorites ? &InternalPlaceManager::findNonFavoritePlacesByGroup
                                           : &InternalPlaceManager::findPlacesByGroup;
    Error::Type error = Error::Unspecified;
    answer.places = (manager.*find)(job.group, &error, &answer.handle, job.term, job.offset, job.limit, job.centre);
    answer.error = error;
    answer.reason = Error::reason(error);
}

bool SearchManagerPrivate::dataAvailable(const Job &job, const Answer &answer)
{
    // They would stay with this thread, which has no event loop and ends.
    for (const QSharedPointer<AbstractPlace> &place : answer.places)
        place->moveToThread(thread());
    SearchResult result;
    SearchResultPrivate &data = *SearchResultPrivate::privateFromPublic(&result);
    data.setSource(job.group);
    data.setHandle(answer.handle);
    data.setResult(answer.places);
    data.setReason(answer.reason);
    const bool last = !m_queue->hasPending([](const Job &) { return true; });
    Q_EMIT resultAvailable(answer.error, result, last, job.searchId);
    return true;
}

void SearchManagerPrivate::close()
{
    m_timer.stop();
    const Queue::Lock lock(*m_queue);
    if (m_queue->isBusy())
        Q_EMIT cancelled(m_searchId);
    m_queue->close();
}

} // namespace vela::platform::places
