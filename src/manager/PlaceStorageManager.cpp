// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "places/PlaceStorageManager.h"

#include "manager/PlaceCopy.h"
#include "manager/PlaceManagerPrivate.h"
#include "manager/PlaceStorageManagerPrivate.h"
#include "places/PlaceHeader.h"
#include "places/PlaceManager.h"

namespace vela::platform::places
{

namespace
{

using Answer = PlaceStorageManagerPrivate::Answer;
using Call = PlaceStorageManagerPrivate::Call;

/// The full place of a copy; null for a header.
std::unique_ptr<Place> fullPlaceOf(const PlaceCopy &copy)
{
    std::unique_ptr<AbstractPlace> place = copy.toPlace();
    std::unique_ptr<Place> full(dynamic_cast<Place *>(place.get()));
    if (full)
        static_cast<void>(place.release());
    return full;
}

/// Fetches the place into the answer. A stored header hands its search term along, which then becomes recent.
Error::Type fetch(const AbstractPlace &place, Answer &answer)
{
    Error::Type error = Error::Unspecified;
    const auto *header = place.isPersisted() ? dynamic_cast<const PlaceHeader *>(&place) : nullptr;
    const PlaceManagerPrivate manager;
    answer.place.reset(header ? manager.getPlace(header, &error) : manager.getPlace(&place, &error));
    return error;
}

/// A job that stores its own copy of a place and returns it in the answer.
Call store(const Place &place, Error::Type (PlaceManager::*operation)(Place *) const)
{
    return [copy = PlaceCopy(place), operation](Answer &answer) {
        answer.place = fullPlaceOf(copy);
        return (PlaceManager().*operation)(answer.place.get());
    };
}

} // namespace

PlaceStorageManager::PlaceStorageManager(QObject *parent)
    : QObject(parent)
    , d(std::make_unique<PlaceStorageManagerPrivate>(this))
{
    qRegisterMetaType<PlaceStorageReply>("vela::platform::places::PlaceStorageReply");
    const auto forward = [this, sender = d.get()] {
        if (const auto reply = sender->takeReply())
            Q_EMIT finished(*reply);
    };
    connect(d.get(), &PlaceStorageManagerPrivate::answered, this, forward, Qt::QueuedConnection);
}

PlaceStorageManager::~PlaceStorageManager() = default;

int PlaceStorageManager::addPlace(const Place &place, const QVariant &tag)
{
    return d->change(place.id(), tag, store(place, &PlaceManager::addPlace));
}

int PlaceStorageManager::updatePlace(const Place &place, const QVariant &tag)
{
    return d->change(place.id(), tag, store(place, &PlaceManager::updatePlace));
}

int PlaceStorageManager::removePlace(qint64 id, const QVariant &tag)
{
    return d->change(id, tag, [id](Answer &) { return PlaceManager().removePlace(id); });
}

int PlaceStorageManager::usePlace(qint64 id, const QVariant &tag)
{
    return d->change(id, tag, [id](Answer &) { return PlaceManager().usePlace(id); });
}

int PlaceStorageManager::usePlace(const AbstractPlace &place, const QVariant &tag)
{
    return d->change(place.id(), tag,
                     [copy = PlaceCopy(place)](Answer &) { return PlaceManager().usePlace(copy.toPlace().get()); });
}

int PlaceStorageManager::fav(const AbstractPlace &place, const QVariant &tag)
{
    return d->change(place.id(), tag, [copy = PlaceCopy(place), isStored = place.isPersisted()](Answer &answer) {
        if (!isStored)
            answer.place = fullPlaceOf(copy);
        const Error::Type error = answer.place ? Error::Success : fetch(*copy.toPlace(), answer);
        return error == Error::Success ? PlaceManager().fav(answer.place.get()) : error;
    });
}

int PlaceStorageManager::unfav(const AbstractPlace &place, const QVariant &tag)
{
    return d->change(place.id(), tag, [copy = PlaceCopy(place), isStored = place.isPersisted()](Answer &answer) {
        const Error::Type error = isStored ? fetch(*copy.toPlace(), answer) : Error::InvalidArgument;
        return error == Error::Success ? PlaceManager().unfav(answer.place.get()) : error;
    });
}

int PlaceStorageManager::addTag(qint64 id, const QString &placeTag, const QVariant &tag)
{
    return d->change(id, tag, [id, placeTag](Answer &) { return PlaceManager().addTag(id, placeTag); });
}

int PlaceStorageManager::removeTag(qint64 id, const QString &placeTag, const QVariant &tag)
{
    return d->change(id, tag, [id, placeTag](Answer &) { return PlaceManager().removeTag(id, placeTag); });
}

int PlaceStorageManager::getPlace(qint64 id, const QVariant &tag)
{
    return d->fetch(id, tag, [id](Answer &answer) {
        Error::Type error = Error::Unspecified;
        answer.place.reset(PlaceManager().getPlace(id, &error));
        return error;
    });
}

int PlaceStorageManager::getPlace(const AbstractPlace &place, const QVariant &tag)
{
    return d->fetch(place.id(), tag,
                    [copy = PlaceCopy(place)](Answer &answer) { return fetch(*copy.toPlace(), answer); });
}

void PlaceStorageManager::cancel(const QVariant &tag)
{
    d->cancel(tag);
}

} // namespace vela::platform::places
