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

/// Adds, fetches, changes, removes and finds stored places. All calls block until the places service answers. A manager
/// is stateless; it may be used on several threads at once.
///
/// Errors are returned, or written through an `Error::Type *`, which may be null. Any call may fail with
/// Error::ServiceUnavailable, Error::PermissionDenied, Error::CommunicationFailed or an error of the service. A failed
/// find returns an empty list. The caller owns all returned places.
///
/// Common parameters of finds: `handle` receives the state for fetching more results; may be null. `offset` is the
/// index of the first result, from 0, and `limit` the maximum number of results, 0 to 10000; other values give
/// Error::LimitExceeded. A find with an empty list of values finds nothing.
///
/// The environment variable PLACE_CARD_INVOKER_DNAME names the calling application; it is read at every call. When it
/// is unset, added places have no owner, and finds by owner find places without one.
class PLACES_EXPORT PlaceManager
{
public:
    PlaceManager();
    ~PlaceManager();
    PlaceManager(const PlaceManager &) = delete;
    PlaceManager &operator=(const PlaceManager &) = delete;

    /// Stores a new place. Sets its owner to the calling application, and its name to "Unnamed Place" when it is empty;
    /// on success updates the object with the id and all other values of the service. Error::InvalidArgument, without
    /// changes, for null, a place that is stored already, or one that is not valid. When the service refuses the place,
    /// the object has its new owner and name and is still a new place.
    [[nodiscard]] Error::Type addPlace(Place *place) const;

    /// Stores the changes of a place and clears its search term. Error::InvalidArgument for null or a place that is not
    /// stored or not valid.
    [[nodiscard]] Error::Type updatePlace(Place *place) const;

    /// Removes a stored place.
    [[nodiscard]] Error::Type removePlace(qint64 id) const;
    /// Removes a stored place. On success the object becomes a new place that can be added again, even though it is
    /// passed as const. Error::InvalidArgument for null.
    [[nodiscard]] Error::Type removePlace(const AbstractPlace *place) const;

    /// Fetches a full place; null on failure.
    [[nodiscard]] Place *getPlace(qint64 id, Error::Type *error = nullptr) const;
    /// Fetches the full place of a header; null on failure. Sends the search term of the header with the request and
    /// clears it. Error::InvalidArgument for null.
    [[nodiscard]] Place *getPlace(const PlaceHeader *header, Error::Type *error = nullptr) const;

    /// Counts a use of a stored place at the current time.
    [[nodiscard]] Error::Type usePlace(qint64 id) const;
    /// Counts a use of a stored place at the current time. Error::InvalidArgument for null or a place that is not
    /// stored.
    [[nodiscard]] Error::Type usePlace(AbstractPlace *place) const;

    /// Makes a place a favourite, and stores it if needed; the object gets the id. Error::InvalidArgument for null.
    [[nodiscard]] Error::Type fav(AbstractPlace *place) const;
    /// Removes a place from the favourites. When the service deletes the place, the object's id becomes -1.
    /// Error::InvalidArgument for null and for a place that is not stored or not a favourite.
    [[nodiscard]] Error::Type unfav(AbstractPlace *place) const;

    /// Adds a tag to a stored place; no change when it has the tag. Error::NotFound when there is no such place.
    [[nodiscard]] Error::Type addTag(qint64 id, const QString &tag) const;
    /// Removes a tag from a stored place; no change when it lacks the tag. Error::NotFound when there is no such place.
    [[nodiscard]] Error::Type removeTag(qint64 id, const QString &tag) const;
    /// The tags of all stored places.
    [[nodiscard]] QStringList getTagsInUse(Error::Type *error = nullptr) const;

    /// Adds a place to the recently picked ones without saving it. Fails for the same arguments as addPlace().
    [[nodiscard]] Error::Type addRecentlyPickedPlace(Place *place) const;
    /// Clears the recently picked places; saved places stay stored.
    [[nodiscard]] Error::Type clearRecentlyPickedPlaces() const;

    /// Finds places by name: stored places and those of contacts. With `includeRemote` and a valid `centre` also points
    /// of interest near it.
    [[nodiscard]] QList<PlaceHeader *> findPlaces(const QString &term, Error::Type *error = nullptr,
                                                  SearchHandle *handle = nullptr, const SortRule &sort = SortRule(),
                                                  int offset = 0, int limit = 20, bool includeRemote = false,
                                                  const Coordinates &centre = Coordinates()) const;

    /// Finds places that the calling application added.
    [[nodiscard]] QList<PlaceHeader *> findMyPlaces(Error::Type *error = nullptr, SearchHandle *handle = nullptr,
                                                    const SortRule &sort = SortRule(), int offset = 0,
                                                    int limit = 20) const;

    /// Finds places by last use, latest first.
    /// @param onlyMine only places added by the calling application.
    /// @param since only places used at or after this time, in seconds since 1970-01-01T00:00:00 UTC; 0 for all.
    [[nodiscard]] QList<PlaceHeader *> findRecentPlaces(Error::Type *error = nullptr, SearchHandle *handle = nullptr,
                                                        bool onlyMine = false, unsigned int since = 0, int offset = 0,
                                                        int limit = 20) const;

    /// Finds places of any of these owners.
    [[nodiscard]] QList<PlaceHeader *> findPlacesByOwners(const QStringList &owners, Error::Type *error = nullptr,
                                                          SearchHandle *handle = nullptr,
                                                          const SortRule &sort = SortRule(), int offset = 0,
                                                          int limit = 20) const;
    /// Finds places with auxiliary data of any of these types.
    [[nodiscard]] QList<PlaceHeader *> findPlacesByTypes(const QStringList &types, Error::Type *error = nullptr,
                                                         SearchHandle *handle = nullptr,
                                                         const SortRule &sort = SortRule(), int offset = 0,
                                                         int limit = 20) const;
    /// Finds places with any of these tags.
    [[nodiscard]] QList<PlaceHeader *> findPlacesByTags(const QStringList &tags, Error::Type *error = nullptr,
                                                        SearchHandle *handle = nullptr,
                                                        const SortRule &sort = SortRule(), int offset = 0,
                                                        int limit = 20) const;

    /// Finds stored places with the same name within `radius` metres of `place`, or at exactly the same coordinates for
    /// `radius` 0. A place without a name is searched by its primary location. Compares at most 100 places with the
    /// name. Error::InvalidArgument for null.
    [[nodiscard]] QList<PlaceHeader *> findEquivalentPlaces(const Place *place, Error::Type *error = nullptr,
                                                            int radius = 0) const;

private:
    std::unique_ptr<PlaceManagerPrivate> d;
};

} // namespace vela::platform::places
