// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "places/PlaceManager.h"

#include "manager/PlaceManagerPrivate.h"
#include "model/PlacePrivate.h"

namespace vela::platform::places
{

PlaceManager::PlaceManager()
    : d(std::make_unique<PlaceManagerPrivate>())
{}

PlaceManager::~PlaceManager() = default;

Error::Type PlaceManager::addPlace(Place *place) const
{
    return d->addPlace(place, PlacePrivate::RECENT_AND_SAVED);
}

Error::Type PlaceManager::updatePlace(Place *place) const
{
    return d->updatePlace(place, PlacePrivate::ExplicitlySaved);
}

Error::Type PlaceManager::removePlace(qint64 id) const
{
    return d->removePlace(id);
}

Error::Type PlaceManager::removePlace(const AbstractPlace *place) const
{
    return d->removePlace(place);
}

Place *PlaceManager::getPlace(qint64 id, Error::Type *error) const
{
    return d->getPlace(id, error);
}

Place *PlaceManager::getPlace(const PlaceHeader *header, Error::Type *error) const
{
    return d->getPlace(header, error);
}

Error::Type PlaceManager::usePlace(qint64 id) const
{
    return d->usePlace(id);
}

Error::Type PlaceManager::usePlace(AbstractPlace *place) const
{
    return d->usePlace(place);
}

Error::Type PlaceManager::fav(AbstractPlace *place) const
{
    return d->fav(place);
}

Error::Type PlaceManager::unfav(AbstractPlace *place) const
{
    return d->unfav(place);
}

Error::Type PlaceManager::addTag(qint64 id, const QString &tag) const
{
    return d->addTag(id, tag);
}

Error::Type PlaceManager::removeTag(qint64 id, const QString &tag) const
{
    return d->removeTag(id, tag);
}

QStringList PlaceManager::getTagsInUse(Error::Type *error) const
{
    return d->getTagsInUse(error);
}

Error::Type PlaceManager::addRecentlyPickedPlace(Place *place) const
{
    return d->addRecentlyPickedPlace(place);
}

Error::Type PlaceManager::clearRecentlyPickedPlaces() const
{
    return d->clearRecentlyPickedPlaces();
}

QList<PlaceHeader *> PlaceManager::findPlaces(const QString &term, Error::Type *error, SearchHandle *handle,
                                              const SortRule &sort, int offset, int limit, bool includeRemote,
                                              const Coordinates &centre) const
{
    return d->findPlaces(term, error, handle, sort, offset, limit, includeRemote, centre);
}

QList<PlaceHeader *> PlaceManager::findMyPlaces(Error::Type *error, SearchHandle *handle, const SortRule &sort,
                                                int offset, int limit) const
{
    return d->findMyPlaces(error, handle, sort, offset, limit);
}

QList<PlaceHeader *> PlaceManager::findRecentPlaces(Error::Type *error, SearchHandle *handle, bool onlyMine,
                                                    unsigned int since, int offset, int limit) const
{
    return d->findRecentPlaces(error, handle, onlyMine, since, offset, limit);
}

QList<PlaceHeader *> PlaceManager::findPlacesByOwners(const QStringList &owners, Error::Type *error,
                                                      SearchHandle *handle, const SortRule &sort, int offset,
                                                      int limit) const
{
    return d->findPlacesByOwners(owners, error, handle, sort, offset, limit);
}

QList<PlaceHeader *> PlaceManager::findPlacesByTypes(const QStringList &types, Error::Type *error, SearchHandle *handle,
                                                     const SortRule &sort, int offset, int limit) const
{
    return d->findPlacesByTypes(types, error, handle, sort, offset, limit);
}

QList<PlaceHeader *> PlaceManager::findPlacesByTags(const QStringList &tags, Error::Type *error, SearchHandle *handle,
                                                    const SortRule &sort, int offset, int limit) const
{
    return d->findPlacesByTags(tags, error, handle, sort, offset, limit);
}

QList<PlaceHeader *> PlaceManager::findEquivalentPlaces(const Place *place, Error::Type *error, int radius) const
{
    return d->findEquivalentPlaces(place, error, radius);
}

} // namespace vela::platform::places
