// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "places/InternalPlaceManager.h"

#include "manager/PlaceManagerPrivate.h"
#include "places/Place.h"
#include "places/PlaceHeader.h"
#include "places/Utilities.h"
#include "protocol/Protocol.h"

namespace vela::platform::places
{

namespace
{

constexpr int MAX_NON_CONTACT_PLACES = 20;

} // namespace

// --------------------------------------------------------------------------------------------------------- finds

QList<QSharedPointer<AbstractPlace>> InternalPlaceManager::findMixedPlaces(const SearchRule &rule, Error::Type *error,
                                                                           SearchHandle *handle, const SortRule &sort,
                                                                           int offset, int limit,
                                                                           const Coordinates &centre) const
{
    return PlaceManagerPrivate::findShared({rule, sort, offset, limit, centre}, error, handle);
}

QList<Place *> InternalPlaceManager::findPlaces(const SearchRule &rule, Error::Type *error, SearchHandle *handle,
                                                const SortRule &sort, int offset, int limit,
                                                const Coordinates &centre) const
{
    return PlaceManagerPrivate::find<Place>({rule, sort, offset, limit, centre}, error, handle);
}

QList<PlaceHeader *> InternalPlaceManager::findContacts(Error::Type *error, SearchHandle *handle, const QString &term,
                                                        const SortRule &sort, int offset, int limit) const
{
    return PlaceManagerPrivate::find<PlaceHeader>(
        {SearchRule::createContactQueryRule(term), sort, offset, limit, Coordinates()}, error, handle);
}

QList<PlaceHeader *> InternalPlaceManager::findRecentlyPickedPlaces(Error::Type *error, SearchHandle *handle,
                                                                    int offset, int limit) const
{
    const SortRule byLastUse = SortRule::createSimpleSortRule(SortField::LastUsedTime, SortOrder::Descending);
    return PlaceManagerPrivate::find<PlaceHeader>(
        {SearchRule::createRecentlyPickedRule(), byLastUse, offset, limit, Coordinates()}, error, handle);
}

QList<PlaceHeader *> InternalPlaceManager::findNonContactPlaces(const QString &term, Error::Type *error) const
{
    SearchRule rule;
    SearchRulePrivate::setPrivate(rule, SearchRulePrivate::createNonContactQueryRule(term).release());
    const SortRule byName = SortRule::createSimpleSortRule(SortField::Name, SortOrder::Ascending);
    return PlaceManagerPrivate::find<PlaceHeader>({rule, byName, 0, MAX_NON_CONTACT_PLACES, Coordinates()}, error,
                                                  nullptr);
}

QList<QSharedPointer<AbstractPlace>> InternalPlaceManager::findPlacesByGroup(SearchResultGroup::Type group,
                                                                             Error::Type *error, SearchHandle *handle,
                                                                             const QString &term, int offset, int limit,
                                                                             const Coordinates &centre) const
{
    return PlaceManagerPrivate().findPlacesByGroup(group, error, handle, term, offset, limit, centre, false);
}

QList<QSharedPointer<AbstractPlace>>
InternalPlaceManager::findNonFavoritePlacesByGroup(SearchResultGroup::Type group, Error::Type *error,
                                                   SearchHandle *handle, const QString &term, int offset, int limit,
                                                   const Coordinates &centre) const
{
    return PlaceManagerPrivate().findPlacesByGroup(group, error, handle, term, offset, limit, centre, true);
}

unsigned int InternalPlaceManager::findPlacesSizeByGroup(SearchResultGroup::Type group, Error::Type *error,
                                                         const QString &term, const Coordinates &centre) const
{
    return PlaceManagerPrivate().findPlacesSizeByGroup(group, error, term, centre);
}

QList<AbstractPlace *> InternalPlaceManager::findMorePlaces(SearchHandle &handle, int count, Error::Type &error,
                                                            int position) const
{
    return PlaceManagerPrivate().findMorePlaces(handle, count, error, position);
}

// ------------------------------------------------------------------------------------------------- single places

Error::Type InternalPlaceManager::fav(AbstractPlace *place) const
{
    return PlaceManagerPrivate().fav(place);
}

Error::Type InternalPlaceManager::unfav(AbstractPlace *place) const
{
    return PlaceManagerPrivate().unfav(place);
}

Place *InternalPlaceManager::getPlace(const AbstractPlace *place, Error::Type *error) const
{
    return PlaceManagerPrivate().getPlace(place, error);
}

Error::Type InternalPlaceManager::addRecentlyPickedPlace(Place *place) const
{
    return PlaceManagerPrivate().addRecentlyPickedPlace(place);
}

Error::Type InternalPlaceManager::clearRecentlyPickedPlaces() const
{
    return PlaceManagerPrivate().clearRecentlyPickedPlaces();
}

QStringList InternalPlaceManager::getRecentSearchTerms(Error::Type *error, const QString &prefix) const
{
    QStringList terms;
    PlaceManagerPrivate::report(Protocol().getRecentSearchTerms(terms, prefix), error);
    return terms;
}

Place *InternalPlaceManager::getPlaceFromContact(int account, int contact, int address, Error::Type *error) const
{
    Place *place = nullptr;
    PlaceManagerPrivate::report(Protocol().getPlaceFromContact(account, contact, address, place), error);
    return place;
}

// -------------------------------------------------------------------------------------------------------- backup

Error::Type InternalPlaceManager::backup(const QString &path) const
{
    return Protocol().backup(Utilities::toStdString(path));
}

Error::Type InternalPlaceManager::restore(const QString &path) const
{
    return Protocol().restore(Utilities::toStdString(path));
}

} // namespace vela::platform::places
