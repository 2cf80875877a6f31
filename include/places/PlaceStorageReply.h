// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/Error.h>
#include <places/Global.h>

#include <QtCore/QSharedPointer>
#include <QtCore/QString>
#include <QtCore/QVariant>

namespace vela::platform::places
{

class Place;
class PlaceStorageReplyData;

/// How a job of a PlaceStorageManager ended. Replies are made by the library; copies share their data and the place.
class PLACES_EXPORT PlaceStorageReply
{
public:
    PlaceStorageReply();
    PlaceStorageReply(const PlaceStorageReply &other);
    /// Takes the value of `other`, which is a reply to no job from then on.
    PlaceStorageReply(PlaceStorageReply &&other) noexcept;
    PlaceStorageReply &operator=(const PlaceStorageReply &other);
    PlaceStorageReply &operator=(PlaceStorageReply &&other) noexcept;
    ~PlaceStorageReply();

    /// Exchanges the values without a copy.
    void swap(PlaceStorageReply &other) noexcept { d.swap(other.d); }
    friend void swap(PlaceStorageReply &left, PlaceStorageReply &right) noexcept { left.swap(right); }

    /// The number that the call gave the job; 0 when unset.
    [[nodiscard]] int jobId() const;
    /// The caller's own value, from the call.
    [[nodiscard]] QVariant tag() const;
    /// Outcome of the job.
    [[nodiscard]] Error::Type status() const;
    /// Why the job failed, as Error::reason() would say it; empty when it did not, or when no reason is known.
    [[nodiscard]] QString reason() const;
    /// Id of the place that the job was about, also when it failed; -1 for a place that is not stored.
    [[nodiscard]] qint64 placeId() const;
    /// The place in full: fetched, or as it is now stored. Null when the job failed, and for jobs that name a place by
    /// its id and do not fetch it. It lives in the thread of the manager.
    [[nodiscard]] QSharedPointer<Place> place() const;

private:
    friend class PlaceStorageReplyData;
    SharedValuePointer<PlaceStorageReplyData> d;
};

/// For debugging: job, status, reason and place.
PLACES_EXPORT QDebug operator<<(QDebug debug, const PlaceStorageReply &reply);

} // namespace vela::platform::places

Q_DECLARE_TYPEINFO(vela::platform::places::PlaceStorageReply, Q_MOVABLE_TYPE);
Q_DECLARE_METATYPE(vela::platform::places::PlaceStorageReply)
