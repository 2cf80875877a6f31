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

/// Functions for the platform's own applications, such as place pickers and unified search, in addition to
/// PlaceManager: finds by custom rules, by group and among contacts, paging, and backup. All calls block until the
/// places service answers. A manager is stateless; it may be used on several threads at once.
///
/// Errors are returned, or written through an `Error::Type *`, which may be null. Any call may fail with
/// Error::ServiceUnavailable, Error::PermissionDenied, Error::CommunicationFailed or an error of the service. A failed
/// find returns an empty list. The caller owns all places that are returned as plain pointers.
///
/// Common parameters of finds:
/// - `handle` receives the state for findMorePlaces(); may be null.
/// - `offset` is the index of the first result, from 0.
/// - `limit` is the maximum number of results.
/// - `centre` is the centre of the user's map; not valid when unknown.
class PLACES_EXPORT InternalPlaceManager
{
public:
    InternalPlaceManager() = default;
    InternalPlaceManager(const InternalPlaceManager &) = delete;
    InternalPlaceManager &operator=(const InternalPlaceManager &) = delete;

    /// Finds places by any rule. The next page starts at `offset` + `limit`, for any number of results.
    [[nodiscard]] QList<QSharedPointer<AbstractPlace>>
    findMixedPlaces(const SearchRule &rule, Error::Type *error = nullptr, SearchHandle *handle = nullptr,
                    const SortRule &sort = SortRule(), int offset = 0, int limit = 20,
                    const Coordinates &centre = Coordinates()) const;

    /// Finds full places by any rule. The next page starts after the returned places.
    [[nodiscard]] QList<Place *> findPlaces(const SearchRule &rule, Error::Type *error = nullptr,
                                            SearchHandle *handle = nullptr, const SortRule &sort = SortRule(),
                                            int offset = 0, int limit = 20,
                                            const Coordinates &centre = Coordinates()) const;

    /// Finds places of contacts by name.
    [[nodiscard]] QList<PlaceHeader *> findContacts(Error::Type *error = nullptr, SearchHandle *handle = nullptr,
                                                    const QString &term = QString(), const SortRule &sort = SortRule(),
                                                    int offset = 0, int limit = 20) const;

    /// Finds recently picked places, latest first.
    [[nodiscard]] QList<PlaceHeader *> findRecentlyPickedPlaces(Error::Type *error = nullptr,
                                                                SearchHandle *handle = nullptr, int offset = 0,
                                                                int limit = 20) const;

    /// Finds the first 20 stored places by name, without those of contacts.
    [[nodiscard]] QList<PlaceHeader *> findNonContactPlaces(const QString &term, Error::Type *error = nullptr) const;

    /// Finds places of a group. Error::InvalidArgument for an invalid group.
    [[nodiscard]] QList<QSharedPointer<AbstractPlace>>
    findPlacesByGroup(SearchResultGroup::Type group, Error::Type *error = nullptr, SearchHandle *handle = nullptr,
                      const QString &term = QString(), int offset = 0, int limit = 20,
                      const Coordinates &centre = Coordinates()) const;

    /// Finds places of a group without favourites, if the group can contain any. Error::InvalidArgument for an invalid
    /// group and for SearchResultGroup::Favorites.
    [[nodiscard]] QList<QSharedPointer<AbstractPlace>>
    findNonFavoritePlacesByGroup(SearchResultGroup::Type group, Error::Type *error = nullptr,
                                 SearchHandle *handle = nullptr, const QString &term = QString(), int offset = 0,
                                 int limit = 20, const Coordinates &centre = Coordinates()) const;

    /// Number of places of findPlacesByGroup() without a limit; 0 on failure.
    [[nodiscard]] unsigned int findPlacesSizeByGroup(SearchResultGroup::Type group, Error::Type *error = nullptr,
                                                     const QString &term = QString(),
                                                     const Coordinates &centre = Coordinates()) const;

    /// Fetches another page of an earlier find.
    /// @param count maximum number of places.
    /// @param position start of the page: an index that was fetched before, or -1 for the next page.
    /// Error::InvalidArgument for a later position and for a handle without a find.
    [[nodiscard]] QList<AbstractPlace *> findMorePlaces(SearchHandle &handle, int count, Error::Type &error,
                                                        int position = -1) const;

    /// See PlaceManager::fav().
    [[nodiscard]] Error::Type fav(AbstractPlace *place) const;
    /// See PlaceManager::unfav().
    [[nodiscard]] Error::Type unfav(AbstractPlace *place) const;

    /// Fetches a full place: a stored one by its id, any other as a suggestion. Null on failure.
    [[nodiscard]] Place *getPlace(const AbstractPlace *place, Error::Type *error = nullptr) const;

    /// See PlaceManager::addRecentlyPickedPlace().
    [[nodiscard]] Error::Type addRecentlyPickedPlace(Place *place) const;
    /// See PlaceManager::clearRecentlyPickedPlaces().
    [[nodiscard]] Error::Type clearRecentlyPickedPlaces() const;

    /// Recent search terms that start with `prefix`, latest first. The prefix is compared as Latin-1 text.
    [[nodiscard]] QStringList getRecentSearchTerms(Error::Type *error = nullptr,
                                                   const QString &prefix = QString()) const;

    /// The place of a contact; null on failure.
    /// @param account from ContactAuxiliaryData::accountId().
    /// @param contact from ContactAuxiliaryData::contactId().
    /// @param address number of the address: its kind (1 home, 2 work, 3 other), plus 3 for each earlier address of the
    /// same kind; 0 for the first address.
    [[nodiscard]] Place *getPlaceFromContact(int account, int contact, int address, Error::Type *error = nullptr) const;

    /// Lets the service write all places to a file. The path must be absolute.
    [[nodiscard]] Error::Type backup(const QString &path) const;
    /// Lets the service replace all places by those of a backup. The path must be absolute.
    [[nodiscard]] Error::Type restore(const QString &path) const;
};

} // namespace vela::platform::places
