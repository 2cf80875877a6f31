// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "search/PlaceSearchManagerPrivate.h"

#include "auxdata/AuxiliaryDataReplyData.h"
#include "manager/PlaceManagerPrivate.h"
#include "protocol/Logger.h"

namespace vela::platform::places
{

namespace
{

constexpr WorkerThreads::Reports REPORTS = {
    [](int error) { Logger::error("SearchManager::dequeue cond wait failed %d.\n", error); },
    [](int error) { Logger::error("SearchManager::close cond wait failed %d.\n", error); },
};

/// The reply when a request fails.
AuxiliaryDataReply failedReply(const AuxiliaryDataRequest &request)
{
    AuxiliaryDataReply reply;
    AuxiliaryDataReplyData &data = *AuxiliaryDataReplyData::fromPublic(reply);
    data.place = request.place();
    data.userDefinedValue = request.userDefinedValue();
    data.status = Error::Unspecified;
    return reply;
}

} // namespace

std::mutex PlaceSearchManagerPrivate::providersMutex;
QList<Provider> PlaceSearchManagerPrivate::providers;
std::atomic<bool> PlaceSearchManagerPrivate::providersRetrieved = false;

PlaceSearchManagerPrivate::PlaceSearchManagerPrivate(QObject *parent)
    : QObject(parent)
    , m_queue(std::make_shared<Queue>(
          REPORTS, fetch, [this](const Job &job, const QVariant &answer) { return dataAvailable(job, answer); }))
{
    m_queue->start();
}

PlaceSearchManagerPrivate::~PlaceSearchManagerPrivate()
{
    m_queue->close();
}

int PlaceSearchManagerPrivate::requestAuxiliaryData(const QList<AuxiliaryDataRequest> &requests, const QVariant &tag)
{
    QList<QVariant> payloads;
    for (const AuxiliaryDataRequest &request : requests) {
        if (!request.isValid())
            return Error::RefusedList;
        payloads.append(QVariant::fromValue(request));
    }
    enqueue(payloads, tag);
    return Error::Success;
}

void PlaceSearchManagerPrivate::enqueue(const QList<QVariant> &payloads, const QVariant &tag)
{
    const Queue::Lock lock(*m_queue);
    for (const QVariant &payload : payloads)
        m_queue->add({0, tag, payload});
    m_queue->wake();
}

void PlaceSearchManagerPrivate::cancel(const QVariant &tag)
{
    const Queue::Lock lock(*m_queue);
    m_queue->drop([&](const Job &job) { return job.tag == tag; });
}

void PlaceSearchManagerPrivate::fetch(const Job &job, QVariant &answer)
{
    if (!job.payload.canConvert<AuxiliaryDataRequest>()) {
        Logger::error("SearchManager::threadEntryPoint request not unsupported");
        return;
    }
    const auto request = job.payload.value<AuxiliaryDataRequest>();
    AuxiliaryDataReply reply = failedReply(request);
    answer.setValue(reply);
    (void)PlaceManagerPrivate().getAuxiliaryData(request, reply); // the reply contains the outcome
    answer.setValue(reply);
}

bool PlaceSearchManagerPrivate::dataAvailable(const Job &job, const QVariant &answer)
{
    if (!job.payload.canConvert<AuxiliaryDataRequest>() || !answer.canConvert<AuxiliaryDataReply>())
        return false;
    const bool last = !hasPendingJobs(job.tag);
    Q_EMIT auxiliaryDataAvailable({answer.value<AuxiliaryDataReply>()}, job.tag, last);
    return true;
}

bool PlaceSearchManagerPrivate::hasPendingJobs(const QVariant &tag) const
{
    return m_queue->hasPending([&](const Job &job) { return job.tag == tag; });
}

QList<Provider> PlaceSearchManagerPrivate::getSupportedProviders()
{
    if (providersRetrieved)
        return providers;
    const std::lock_guard<std::mutex> lock(providersMutex);
    if (!providersRetrieved && PlaceManagerPrivate().getSupportedProviders(providers) != Error::Success)
        Logger::error("Provider: cannot retrieve remote providers");
    providersRetrieved = true; // also after a failure, so that a service without providers is asked only once
    return providers;
}

} // namespace vela::platform::places
