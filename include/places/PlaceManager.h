// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/Coordinates.h>
#include <places/Error.h>
#include <places/Global.h>
#include <places/SearchRule.h>
#include <places/SortRule.h>

#include <QtCore/QList>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <memory>

namespace vela::platform::places
{

class AbstractPlace;
class Place;
class PlaceHeader;
class PlaceManagerPrivate;
class SearchHandle;

/// The stored places: to add, fetch, change, remove and find them. Every call asks the places service and waits for its
/// answer. A manager has no state of its own; one may be used on several threads at once.
///
/// Errors are returned, or written through an `Error::Type *` where one is taken (null when not wanted). Any call may
/// give Error::ServiceUnavailable, Error::PermissionDenied, Error::CommunicationFailed or what the service answers. A
/// find that fails returns an empty list. The caller owns every place that a call returns.
///
/// Finds take the same last arguments. `handle` takes what is needed to fetch more, and may be null. `offset` is the
/// index of the first result wanted, from 0, and `limit` the largest number of results, 0 to 10000; anything else gives
/// Error::LimitExceeded. Where a find takes a list, an empty one finds nothing.
///
/// The calling application is known by the environment variable PLACE_CARD_INVOKER_DNAME, read at every call; unset,
/// its places have no owner, and finding them finds the places without one.
class PLACES_EXPORT PlaceManager
{
public:
    PlaceManager();
    ~PlaceManager();
    PlaceManager(const PlaceManager &) = delete;
    PlaceManager &operator=(const PlaceManager &) = delete;

    /// Stores a new place. Its owner becomes the calling application, its name "Unnamed Place" when it has none; on
    /// success the object takes the id and everything else that the service made of it. Error::InvalidArgument for
    /// null, a place that is stored already, or one that is not valid; the object is then as it was. When the service
    /// refuses, the object has its new owner and name and is still a new place.
    [[nodiscard]] Error::Type addPlace(Place *place) const;

    /// Stores the changes of a place, and forgets the search term that it was found with. Error::InvalidArgument for
    /// null or a place that is not stored or not valid.
    [[nodiscard]] Error::Type updatePlace(Place *place) const;

    /// Removes a stored place.
    [[nodiscard]] Error::Type removePlace(qint64 id) const;
    /// Removes a stored place; on success the object is a new place again and can be added once more, also where it was
    /// handed over as const. Error::InvalidArgument for null.
    [[nodiscard]] Error::Type removePlace(const AbstractPlace *place) const;

    /// Fetches a place in full; null on failure.
    [[nodiscard]] Place *getPlace(qint64 id, Error::Type *error = nullptr) const;
    /// Fetches the full place behind a header; null on failure. The search term that the header was found with goes
    /// with the request and is then forgotten. Error::InvalidArgument for null.
    [[nodiscard]] Place *getPlace(const PlaceHeader *header, Error::Type *error = nullptr) const;

    /// Counts a use of a stored place, now.
    [[nodiscard]] Error::Type usePlace(qint64 id) const;
    /// Counts a use of a stored place, now. Error::InvalidArgument for null or a place that is not stored.
    [[nodiscard]] Error::Type usePlace(AbstractPlace *place) const;

    /// Makes a place a favourite, storing it if need be; the object takes the id. Error::InvalidArgument for null.
    [[nodiscard]] Error::Type fav(AbstractPlace *place) const;
    /// Makes a favourite an ordinary place again. When the service keeps it no longer, the object's id becomes -1.
    /// Error::InvalidArgument for null or a place that is not stored or no favourite.
    [[nodiscard]] Error::Type unfav(AbstractPlace *place) const;

    /// Adds a tag to a stored place; one that it carries already changes nothing. Error::NotFound for no such place.
    [[nodiscard]] Error::Type addTag(qint64 id, const QString &tag) const;
    /// Removes a tag of a stored place; one that it does not carry changes nothing. Error::NotFound for no such place.
    [[nodiscard]] Error::Type removeTag(qint64 id, const QString &tag) const;
    /// The tags that stored places carry.
    [[nodiscard]] QStringList getTagsInUse(Error::Type *error = nullptr) const;

    /// Keeps a place among the recently picked ones without saving it. Refuses what addPlace() refuses.
    [[nodiscard]] Error::Type addRecentlyPickedPlace(Place *place) const;
    /// Forgets the recently picked places; those that were saved as well stay.
    [[nodiscard]] Error::Type clearRecentlyPickedPlaces() const;

    /// Finds places by name: stored places and those of contacts and, when `includeRemote` is set and `centre` is
    /// valid, points of interest near it.
    [[nodiscard]] QList<PlaceHeader *> findPlaces(const QString &term, Error::Type *error = nullptr,
                                                  SearchHandle *handle = nullptr, const SortRule &sort = SortRule(),
                                                  int offset = 0, int limit = 20, bool includeRemote = false,
                                                  const Coordinates &centre = Coordinates()) const;

    /// Finds the places that the calling application added.
    [[nodiscard]] QList<PlaceHeader *> findMyPlaces(Error::Type *error = nullptr, SearchHandle *handle = nullptr,
                                                    const SortRule &sort = SortRule(), int offset = 0,
                                                    int limit = 20) const;

    /// Finds places by their last use, latest first.
    /// @param onlyMine only places that the calling application added.
    /// @param since only places used at this time or later, in seconds since 1970-01-01T00:00:00 UTC; 0 for all.
    [[nodiscard]] QList<PlaceHeader *> findRecentPlaces(Error::Type *error = nullptr, SearchHandle *handle = nullptr,
                                                        bool onlyMine = false, unsigned int since = 0, int offset = 0,
                                                        int limit = 20) const;

    /// Finds the places of any of these owners.
    [[nodiscard]] QList<PlaceHeader *> findPlacesByOwners(const QStringList &owners, Error::Type *error = nullptr,
                                                          SearchHandle *handle = nullptr,
                                                          const SortRule &sort = SortRule(), int offset = 0,
                                                          int limit = 20) const;
    /// Finds the places with auxiliary data of any of these types.
    [[nodiscard]] QList<PlaceHeader *> findPlacesByTypes(const QStringList &types, Error::Type *error = nullptr,
                                                         SearchHandle *handle = nullptr,
                                                         const SortRule &sort = SortRule(), int offset = 0,
                                                         int limit = 20) const;
    /// Finds the places with any of these tags.
    [[nodiscard]] QList<PlaceHeader *> findPlacesByTags(const QStringList &tags, Error::Type *error = nullptr,
                                                        SearchHandle *handle = nullptr,
                                                        const SortRule &sort = SortRule(), int offset = 0,
                                                        int limit = 20) const;

    /// Finds stored places of the same name within `radius` metres of `place`, or with `radius` 0 at the very same
    /// coordinates. A place without a name is looked up by its primary location. Looks at 100 places of the name at
    /// most. Error::InvalidArgument for null.
    [[nodiscard]] QList<PlaceHeader *> findEquivalentPlaces(const Place *place, Error::Type *error = nullptr,
                                                            int radius = 0) const;

private:
    std::unique_ptr<PlaceManagerPrivate> d;
};

} // namespace vela::platform::places
