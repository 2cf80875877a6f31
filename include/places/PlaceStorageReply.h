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

/// Result of a job of a PlaceStorageManager, created by the library. Copies share their data and the place.
class PLACES_EXPORT PlaceStorageReply
{
public:
    PlaceStorageReply();
    PlaceStorageReply(const PlaceStorageReply &other);
    /// Moves the value; `other` becomes a reply to no job.
    PlaceStorageReply(PlaceStorageReply &&other) noexcept;
    PlaceStorageReply &operator=(const PlaceStorageReply &other);
    PlaceStorageReply &operator=(PlaceStorageReply &&other) noexcept;
    ~PlaceStorageReply();

    /// Swaps the values without a copy.
    void swap(PlaceStorageReply &other) noexcept { d.swap(other.d); }
    friend void swap(PlaceStorageReply &left, PlaceStorageReply &right) noexcept { left.swap(right); }

    /// Number of the job; 0 when unset.
    [[nodiscard]] int jobId() const;
    /// The `tag` of the call.
    [[nodiscard]] QVariant tag() const;
    /// Outcome of the job.
    [[nodiscard]] Error::Type status() const;
    /// Why the job failed, like Error::reason(); empty on success and when no reason is known.
    [[nodiscard]] QString reason() const;
    /// Id of the place of the job, also on failure; -1 for a place that is not stored.
    [[nodiscard]] qint64 placeId() const;
    /// The full place: fetched, or as stored now. Null on failure, and for jobs by id that do not fetch the place. It
    /// belongs to the manager's thread.
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
