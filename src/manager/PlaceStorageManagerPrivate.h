// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/PlaceId.h"
#include "places/Error.h"
#include "places/Place.h"
#include "places/PlaceStorageReply.h"
#include "search/WorkerQueue.h"

#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QVariant>

#include <deque>
#include <functional>
#include <memory>
#include <optional>

namespace vela::platform::places
{

class PlaceStorageManagerPrivate : public QObject
{
    Q_OBJECT
public:
    struct Answer
    {
        Error::Type error = Error::Unspecified;
        QString reason;
        qint64 placeId = PlaceId::UNDEFINED_PERSISTED_ID;
        std::unique_ptr<Place> place; ///< Unique, so that it is destroyed in its thread.
    };
    /// Calls the service on a worker thread; may put a place into the answer.
    using Call = std::function<Error::Type(Answer &answer)>;
    struct Job
    {
        int id = 0;
        QVariant tag;
        qint64 placeId = PlaceId::UNDEFINED_PERSISTED_ID;
        Call call;
    };
    using Queue = WorkerQueue<Job, Answer>;

    explicit PlaceStorageManagerPrivate(QObject *parent);
    ~PlaceStorageManagerPrivate() override;

    /// Each function returns the id of the job. @param placeId the place of the change; -1 for one that is not stored.
    int change(qint64 placeId, const QVariant &tag, const Call &call);
    int fetch(qint64 placeId, const QVariant &tag, const Call &call);
    void cancel(const QVariant &tag);
    /// Call it once per answered(), in the slot. std::nullopt when the job was cancelled meanwhile.
    std::optional<PlaceStorageReply> takeReply();

Q_SIGNALS:
    /// Emitted on a worker thread, with the lock held.
    void answered();

private:
    static void carryOut(const Job &job, Answer &answer);
    bool dataAvailable(const Job &job, Answer &answer);

    const std::shared_ptr<Queue> m_queue;
    std::deque<PlaceStorageReply> m_replies; ///< Guarded by the queue mutex; one per answered() in flight.
};

} // namespace vela::platform::places
