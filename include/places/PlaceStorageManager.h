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

/// Saves, changes and fetches places without waiting: the operations of PlaceManager for a program with an event loop.
///
/// Every operation is a job. The call returns its number at once, from 1 on, and finished() reports it once. The
/// argument `tag` is a value of the caller's own that comes back with the reply and names the jobs to cancel(). Places
/// are copied in the call, so the caller may change or delete its object right after it; it is never changed by a job.
/// Arguments that PlaceManager refuses are reported as Error::InvalidArgument.
///
/// Changes of one manager are carried out in the order of the calls, one after the other, and reported in this order.
/// Fetches overtake changes that wait: to see a change, fetch once it is reported. Between two managers there is no
/// order.
///
/// A manager belongs to the thread it lives in, which needs an event loop: its functions are called there and its
/// signal is emitted there, however a slot is connected. Two threads of its own ask the places service. A manager may
/// be destroyed at any moment, also by a slot of its signal.
class PLACES_EXPORT PlaceStorageManager : public QObject
{
    Q_OBJECT
public:
    explicit PlaceStorageManager(QObject *parent = nullptr);
    /// Nothing is reported any more. Fetches that were not begun are dropped. Changes that were asked for and not
    /// cancelled are still carried out; those that cannot begin within 30 seconds are lost, and the log says how many.
    /// Waits for all of this, and for the answers that the service owes the requests under way, 30 seconds each at the
    /// most.
    ~PlaceStorageManager() override;

    /// Stores a new place, as PlaceManager::addPlace(). The reply has the place as it was stored.
    int addPlace(const Place &place, const QVariant &tag = QVariant());
    /// Stores the changes of a place, as PlaceManager::updatePlace(). The reply has the place as it was sent.
    int updatePlace(const Place &place, const QVariant &tag = QVariant());
    /// Removes a stored place.
    int removePlace(qint64 id, const QVariant &tag = QVariant());
    /// Counts a use of a stored place. The time is that at which the job is carried out.
    int usePlace(qint64 id, const QVariant &tag = QVariant());
    /// The same; the search term that the place was found with goes along.
    int usePlace(const AbstractPlace &place, const QVariant &tag = QVariant());

    /// Makes a place a favourite. A stored one is fetched for it, so nothing else of it changes; any other is stored:
    /// a full place as it is, a header as what the service finds behind it. The reply has the place.
    int fav(const AbstractPlace &place, const QVariant &tag = QVariant());
    /// Makes a stored favourite an ordinary place again. The reply has the place; its id is -1 when the service keeps
    /// it no longer.
    int unfav(const AbstractPlace &place, const QVariant &tag = QVariant());

    /// Adds a tag to a stored place; one that it carries already changes nothing.
    int addTag(qint64 id, const QString &placeTag, const QVariant &tag = QVariant());
    /// Removes a tag of a stored place; one that it does not carry changes nothing.
    int removeTag(qint64 id, const QString &placeTag, const QVariant &tag = QVariant());

    /// Fetches a place in full.
    int getPlace(qint64 id, const QVariant &tag = QVariant());
    /// The same for any place that was found: a stored one by its id, any other from the source that found it.
    int getPlace(const AbstractPlace &place, const QVariant &tag = QVariant());

    /// Drops every job with this tag: none of them is reported any more, and those that wait are not carried out. A
    /// change that has been sent to the service may still be made there; later changes wait until that is decided.
    void cancel(const QVariant &tag);

Q_SIGNALS:
    /// A job was carried out; PlaceStorageReply::status() says how.
    void finished(const vela::platform::places::PlaceStorageReply &reply);

private:
    const std::unique_ptr<PlaceStorageManagerPrivate> d;
};

} // namespace vela::platform::places
