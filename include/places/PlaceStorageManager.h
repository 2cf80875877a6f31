// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/Global.h>
#include <places/PlaceStorageReply.h>

#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QVariant>

#include <memory>

namespace vela::platform::places
{

class AbstractPlace;
class Place;
class PlaceStorageManagerPrivate;

/// Asynchronous version of PlaceManager for a program with an event loop: saves, changes and fetches places.
///
/// Every operation is a job. The call returns its number at once, from 1 on, and finished() reports it once. `tag` is a
/// value of the caller, returned with the reply and used by cancel(). Calls copy their places: the caller may change or
/// delete them at once, and jobs never change them. Arguments that PlaceManager refuses are reported as
/// Error::InvalidArgument.
///
/// Changes of one manager are made one by one in the order of the calls, and reported in this order. Fetches overtake
/// waiting changes: to see a change, fetch after it is reported. Jobs of different managers are not ordered.
///
/// Call all functions on the manager's thread, which needs an event loop; the signal is emitted there for every
/// connection type. Two threads of the manager call the places service. The manager may be destroyed at any time, also
/// by a slot of its signal.
class PLACES_EXPORT PlaceStorageManager : public QObject
{
    Q_OBJECT
public:
    explicit PlaceStorageManager(QObject *parent = nullptr);
    /// Stops all reports. Drops fetches that are not started. Makes the waiting changes that are not cancelled; changes
    /// that cannot start within 30 seconds are lost, and their number is logged. Blocks until then, and until running
    /// requests are answered, at most 30 seconds each.
    ~PlaceStorageManager() override;

    /// Stores a new place; see PlaceManager::addPlace(). The reply contains the stored place.
    int addPlace(const Place &place, const QVariant &tag = QVariant());
    /// Stores the changes of a place; see PlaceManager::updatePlace(). The reply contains the place as sent.
    int updatePlace(const Place &place, const QVariant &tag = QVariant());
    /// Removes a stored place.
    int removePlace(qint64 id, const QVariant &tag = QVariant());
    /// Counts a use of a stored place, at the time of the job.
    int usePlace(qint64 id, const QVariant &tag = QVariant());
    /// The same; also sends the search term of the place.
    int usePlace(const AbstractPlace &place, const QVariant &tag = QVariant());

    /// Makes a place a favourite. A stored place is fetched first, so its other values do not change; another place is
    /// stored: a full place as it is, a header as the full place that the service finds for it. The reply contains the
    /// place.
    int fav(const AbstractPlace &place, const QVariant &tag = QVariant());
    /// Removes a stored place from the favourites. The reply contains the place, with id -1 when the service deletes
    /// it.
    int unfav(const AbstractPlace &place, const QVariant &tag = QVariant());

    /// Adds a tag to a stored place; no change when it has the tag.
    int addTag(qint64 id, const QString &placeTag, const QVariant &tag = QVariant());
    /// Removes a tag from a stored place; no change when it lacks the tag.
    int removeTag(qint64 id, const QString &placeTag, const QVariant &tag = QVariant());

    /// Fetches a full place.
    int getPlace(qint64 id, const QVariant &tag = QVariant());
    /// The same for any found place: a stored one by its id, any other from the source that found it.
    int getPlace(const AbstractPlace &place, const QVariant &tag = QVariant());

    /// Cancels all jobs with this tag: they are not reported, and waiting ones are not run. A change that was sent
    /// already may still be made; later changes wait for its end.
    void cancel(const QVariant &tag);

Q_SIGNALS:
    /// Reports a job; PlaceStorageReply::status() is its outcome.
    void finished(const vela::platform::places::PlaceStorageReply &reply);

private:
    const std::unique_ptr<PlaceStorageManagerPrivate> d;
};

} // namespace vela::platform::places
