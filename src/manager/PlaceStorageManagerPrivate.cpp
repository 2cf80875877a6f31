// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "manager/PlaceStorageManagerPrivate.h"

#include "manager/PlaceStorageReplyData.h"
#include "protocol/Logger.h"

#include <chrono>

namespace vela::platform::places
{

namespace
{

/// A manager under destruction starts no further change after this time.
constexpr std::chrono::seconds FINISH_TIME(30);

constexpr WorkerThreads::Reports REPORTS = {
    [](int error) { Logger::error("PlaceStorageManager: waiting for work failed, error %d", error); },
    [](int error) { Logger::error("PlaceStorageManager: waiting for the threads failed, error %d", error); },
};

} // namespace

PlaceStorageManagerPrivate::PlaceStorageManagerPrivate(QObject *parent)
    : QObject(parent)
    , m_queue(std::make_shared<Queue>(REPORTS, carryOut,
                                      [this](const Job &job, Answer &answer) { return dataAvailable(job, answer); }))
{
    m_queue->start();
}

PlaceStorageManagerPrivate::~PlaceStorageManagerPrivate()
{
    if (const int lost = m_queue->finish(FINISH_TIME); lost > 0)
        Logger::error("PlaceStorageManager: destroyed too early, %d changes were not carried out", lost);
}

int PlaceStorageManagerPrivate::change(qint64 placeId, const QVariant &tag, const Call &call)
{
    const Queue::Lock lock(*m_queue);
    m_queue->wake();
    return m_queue->addOrdered({0, tag, placeId, call});
}

int PlaceStorageManagerPrivate::fetch(qint64 placeId, const QVariant &tag, const Call &call)
{
    const Queue::Lock lock(*m_queue);
    m_queue->wake();
    return m_queue->add({0, tag, placeId, call});
}

void PlaceStorageManagerPrivate::cancel(const QVariant &tag)
{
    const Queue::Lock lock(*m_queue);
    m_queue->drop([&](const Job &job) { return job.tag == tag; });
}

void PlaceStorageManagerPrivate::carryOut(const Job &job, Answer &answer)
{
    answer.placeId = job.placeId;
    answer.error = job.call(answer);
    answer.reason = Error::reason(answer.error);
    if (answer.error == Error::Success && answer.place)
        answer.placeId = answer.place->id();
}

bool PlaceStorageManagerPrivate::dataAvailable(const Job &job, Answer &answer)
{
    PlaceStorageReply reply;
    PlaceStorageReplyData &data = *PlaceStorageReplyData::fromPublic(reply);
    data.jobId = job.id;
    data.tag = job.tag;
    data.status = answer.error;
    data.reason = answer.reason;
    data.placeId = answer.placeId;
    if (answer.error == Error::Success && answer.place) {
        answer.place->moveToThread(thread());
        data.place.reset(answer.place.release());
    }
    m_replies.push_back(reply);
    Q_EMIT answered();
    return true;
}

std::optional<PlaceStorageReply> PlaceStorageManagerPrivate::takeReply()
{
    const Queue::Lock lock(*m_queue);
    const PlaceStorageReply reply = m_replies.front();
    m_replies.pop_front();
    return m_queue->arrived() ? std::optional(reply) : std::nullopt;
}

} // namespace vela::platform::places
