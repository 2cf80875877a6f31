// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "places/AuxiliaryDataReply.h"
#include "places/AuxiliaryDataRequest.h"
#include "places/Provider.h"
#include "search/WorkerQueue.h"

#include <QtCore/QList>
#include <QtCore/QObject>
#include <QtCore/QVariant>

#include <atomic>
#include <memory>
#include <mutex>

namespace vela::platform::places
{

class PlaceSearchManagerPrivate : public QObject
{
    Q_OBJECT
public:
    struct Job
    {
        int id = 0;
        QVariant tag;
        QVariant payload; ///< An AuxiliaryDataRequest, the only kind of request.
    };
    using Queue = WorkerQueue<Job, QVariant>;

    explicit PlaceSearchManagerPrivate(QObject *parent);
    ~PlaceSearchManagerPrivate() override;

    int requestAuxiliaryData(const QList<AuxiliaryDataRequest> &requests, const QVariant &tag);
    void enqueue(const QList<QVariant> &payloads, const QVariant &tag);
    void cancel(const QVariant &tag);
    /// Call it once per auxiliaryDataAvailable(), in the slot. False when its request was cancelled meanwhile.
    bool arrived() { return m_queue->arrived(); }

    static QList<Provider> getSupportedProviders();

    static std::mutex providersMutex;
    // Written under the mutex, the flag last; constant once the flag is set:
    static QList<Provider> providers;
    static std::atomic<bool> providersRetrieved;

Q_SIGNALS:
    /// Emitted on a worker thread, with the lock held.
    void auxiliaryDataAvailable(const QList<vela::platform::places::AuxiliaryDataReply> &replies, const QVariant &tag,
                                bool last);

private:
    static void fetch(const Job &job, QVariant &answer);
    bool dataAvailable(const Job &job, const QVariant &answer);
    /// Whether a request with a tag is not answered yet. Call it with the lock held.
    bool hasPendingJobs(const QVariant &tag) const;

    const std::shared_ptr<Queue> m_queue;
};

} // namespace vela::platform::places
