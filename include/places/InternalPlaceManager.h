// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/Coordinates.h>
#include <places/Error.h>
#include <places/Global.h>
#include <places/SearchResultGroup.h>
#include <places/SearchRule.h>
#include <places/SortRule.h>

#include <QtCore/QList>
#include <QtCore/QSharedPointer>
#include <QtCore/QString>
#include <QtCore/QStringList>

namespace vela::platform::places
{

class AbstractPlace;
class Place;
class PlaceHeader;
class SearchHandle;

/// What the platform's own applications, such as place pickers and the unified search, need beyond PlaceManager: finds
/// by rules of their own, by group and among contacts, further pages, and backup. Every call asks the places service
/// and waits for its answer. A manager has no state; one may be used on several threads at once.
///
/// Errors are returned, or written through an `Error::Type *` where one is taken (null when not wanted). Any call may
/// give Error::ServiceUnavailable, Error::PermissionDenied, Error::CommunicationFailed or what the service answers. A
/// find that fails returns an empty list. The caller owns every place that is returned as a bare pointer.
///
/// The parameters of the finds are the same throughout:
/// - `handle` takes what is needed to fetch more with findMorePlaces(); may be null.
/// - `offset` is the index of the first result wanted, from 0.
/// - `limit` is the largest number of results wanted.
/// - `centre` is where the user looks at the map; not valid when unknown.
class PLACES_EXPORT InternalPlaceManager
{
public:
    InternalPlaceManager() = default;
    InternalPlaceManager(const InternalPlaceManager &) = delete;
    InternalPlaceManager &operator=(const InternalPlaceManager &) = delete;

    /// Finds places by any rule. The next page starts `limit` places further, however many came.
    [[nodiscard]] QList<QSharedPointer<AbstractPlace>>
    findMixedPlaces(const SearchRule &rule, Error::Type *error = nullptr, SearchHandle *handle = nullptr,
                    const SortRule &sort = SortRule(), int offset = 0, int limit = 20,
                    const Coordinates &centre = Coordinates()) const;

    /// Finds places in full by any rule. The next page starts behind the places that came.
    [[nodiscard]] QList<Place *> findPlaces(const SearchRule &rule, Error::Type *error = nullptr,
                                            SearchHandle *handle = nullptr, const SortRule &sort = SortRule(),
                                            int offset = 0, int limit = 20,
                                            const Coordinates &centre = Coordinates()) const;

    /// Finds places of contacts by name.
    [[nodiscard]] QList<PlaceHeader *> findContacts(Error::Type *error = nullptr, SearchHandle *handle = nullptr,
                                                    const QString &term = QString(), const SortRule &sort = SortRule(),
                                                    int offset = 0, int limit = 20) const;

    /// Finds the recently picked places, the last one first.
    [[nodiscard]] QList<PlaceHeader *> findRecentlyPickedPlaces(Error::Type *error = nullptr,
                                                                SearchHandle *handle = nullptr, int offset = 0,
                                                                int limit = 20) const;

    /// Finds the first 20 stored places, by name, that are no contact's.
    [[nodiscard]] QList<PlaceHeader *> findNonContactPlaces(const QString &term, Error::Type *error = nullptr) const;

    /// Finds places of a group. Error::InvalidArgument for a number that is no group.
    [[nodiscard]] QList<QSharedPointer<AbstractPlace>>
    findPlacesByGroup(SearchResultGroup::Type group, Error::Type *error = nullptr, SearchHandle *handle = nullptr,
                      const QString &term = QString(), int offset = 0, int limit = 20,
                      const Coordinates &centre = Coordinates()) const;

    /// Finds places of a group that are no favourites, where a group can hold any. Error::InvalidArgument for a number
    /// that is no group and for SearchResultGroup::Favorites.
    [[nodiscard]] QList<QSharedPointer<AbstractPlace>>
    findNonFavoritePlacesByGroup(SearchResultGroup::Type group, Error::Type *error = nullptr,
                                 SearchHandle *handle = nullptr, const QString &term = QString(), int offset = 0,
                                 int limit = 20, const Coordinates &centre = Coordinates()) const;

    /// Number of places that findPlacesByGroup() would find; 0 on failure.
    [[nodiscard]] unsigned int findPlacesSizeByGroup(SearchResultGroup::Type group, Error::Type *error = nullptr,
                                                     const QString &term = QString(),
                                                     const Coordinates &centre = Coordinates()) const;

    /// Fetches a further page of an earlier find.
    /// @param count largest number of places wanted.
    /// @param position where the page starts: an index that was fetched before, or -1 for the page behind the last.
    /// Error::InvalidArgument for a position further on and for a handle of no find.
    [[nodiscard]] QList<AbstractPlace *> findMorePlaces(SearchHandle &handle, int count, Error::Type &error,
                                                        int position = -1) const;

    /// As PlaceManager::fav().
    [[nodiscard]] Error::Type fav(AbstractPlace *place) const;
    /// As PlaceManager::unfav().
    [[nodiscard]] Error::Type unfav(AbstractPlace *place) const;

    /// Fetches a place in full: a stored one by its id, any other as the suggestion it is. Null on failure.
    [[nodiscard]] Place *getPlace(const AbstractPlace *place, Error::Type *error = nullptr) const;

    /// As PlaceManager::addRecentlyPickedPlace().
    [[nodiscard]] Error::Type addRecentlyPickedPlace(Place *place) const;
    /// As PlaceManager::clearRecentlyPickedPlaces().
    [[nodiscard]] Error::Type clearRecentlyPickedPlaces() const;

    /// Terms that were searched for recently and start with `prefix`, the latest first. The prefix is compared as
    /// Latin-1 text.
    [[nodiscard]] QStringList getRecentSearchTerms(Error::Type *error = nullptr,
                                                   const QString &prefix = QString()) const;

    /// The place of a contact; null on failure.
    /// @param account as ContactAuxiliaryData::accountId() gives it.
    /// @param contact as ContactAuxiliaryData::contactId() gives it.
    /// @param address which of the contact's addresses: its kind (1 home, 2 work, 3 other), plus 3 for each address of
    /// that kind before it; 0 for the first of all.
    [[nodiscard]] Place *getPlaceFromContact(int account, int contact, int address, Error::Type *error = nullptr) const;

    /// Has the service write all places to a file, by its absolute path.
    [[nodiscard]] Error::Type backup(const QString &path) const;
    /// Has the service replace all places by those of a backup.
    [[nodiscard]] Error::Type restore(const QString &path) const;
};

} // namespace vela::platform::places
