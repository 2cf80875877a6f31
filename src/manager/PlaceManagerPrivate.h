// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "places/Coordinates.h"
#include "places/Error.h"
#include "places/SearchHandle.h"
#include "places/SearchResultGroup.h"
#include "places/SearchRule.h"
#include "places/SortRule.h"
#include "search/SearchRulePrivate.h"

#include <QtCore/QList>
#include <QtCore/QSharedPointer>
#include <QtCore/QStringList>

namespace vela::platform::places
{

class AbstractPlace;
class AuxiliaryDataReply;
class AuxiliaryDataRequest;
class Place;
class PlaceHeader;
class Provider;

/// The operations of the managers. Stateless; functions may run on any thread.
class PlaceManagerPrivate
{
public:
    /// Arguments of a find. The centre is invalid for a find without one.
    struct Query
    {
        SearchRule rule;
        SortRule sort;
        int offset = 0;
        int limit = 0;
        Coordinates centre;
    };

    [[nodiscard]] Error::Type addPlace(Place *place, int persistenceMask) const;
    [[nodiscard]] Error::Type updatePlace(Place *place, int persistenceMask) const;
    [[nodiscard]] Error::Type removePlace(qint64 id) const;
    [[nodiscard]] Error::Type removePlace(const AbstractPlace *place) const;
    [[nodiscard]] Place *getPlace(qint64 id, Error::Type *error) const;
    [[nodiscard]] Place *getPlace(const PlaceHeader *header, Error::Type *error) const;
    /// Fetches a stored place by its id; resolves any other place as a suggestion.
    [[nodiscard]] Place *getPlace(const AbstractPlace *place, Error::Type *error) const;
    [[nodiscard]] Error::Type getHeader(const Place &place, PlaceHeader *&header) const;
    [[nodiscard]] Error::Type usePlace(qint64 id) const;
    [[nodiscard]] Error::Type usePlace(AbstractPlace *place) const;
    [[nodiscard]] Error::Type fav(AbstractPlace *place) const;
    [[nodiscard]] Error::Type unfav(AbstractPlace *place) const;
    [[nodiscard]] Error::Type addTag(qint64 id, const QString &tag) const;
    [[nodiscard]] Error::Type removeTag(qint64 id, const QString &tag) const;
    QStringList getTagsInUse(Error::Type *error) const;
    [[nodiscard]] Error::Type addRecentlyPickedPlace(Place *place) const;
    [[nodiscard]] Error::Type clearRecentlyPickedPlaces() const;

    QList<PlaceHeader *> findPlaces(const QString &term, Error::Type *error, SearchHandle *handle, const SortRule &sort,
                                    int offset, int limit, bool includeRemote, const Coordinates &centre) const;
    QList<PlaceHeader *> findMyPlaces(Error::Type *error, SearchHandle *handle, const SortRule &sort, int offset,
                                      int limit) const;
    QList<PlaceHeader *> findRecentPlaces(Error::Type *error, SearchHandle *handle, bool onlyMine, unsigned int since,
                                          int offset, int limit) const;
    QList<PlaceHeader *> findPlacesByOwners(const QStringList &owners, Error::Type *error, SearchHandle *handle,
                                            const SortRule &sort, int offset, int limit) const;
    QList<PlaceHeader *> findPlacesByTypes(const QStringList &types, Error::Type *error, SearchHandle *handle,
                                           const SortRule &sort, int offset, int limit) const;
    QList<PlaceHeader *> findPlacesByTags(const QStringList &tags, Error::Type *error, SearchHandle *handle,
                                          const SortRule &sort, int offset, int limit) const;
    QList<PlaceHeader *> findEquivalentPlaces(const Place *place, Error::Type *error, int radius) const;

    QList<QSharedPointer<AbstractPlace>> findPlacesByGroup(SearchResultGroup::Type group, Error::Type *error,
                                                           SearchHandle *handle, const QString &term, int offset,
                                                           int limit, const Coordinates &centre,
                                                           bool excludeFavorites) const;
    unsigned int findPlacesSizeByGroup(SearchResultGroup::Type group, Error::Type *error, const QString &term,
                                       const Coordinates &centre) const;
    unsigned int findPlacesSize(const SearchRule &rule, Error::Type *error, const Coordinates &centre) const;
    /// The page at a position that was fetched before, or the next page for a negative position or the position after
    /// the fetched places; Error::InvalidArgument for any other position.
    QList<AbstractPlace *> findMorePlaces(SearchHandle &handle, int count, Error::Type &error, int position) const;

    [[nodiscard]] Error::Type getAuxiliaryData(const AuxiliaryDataRequest &request, AuxiliaryDataReply &reply) const;
    [[nodiscard]] Error::Type getSupportedProviders(QList<Provider> &providers) const;

    /// The rules of a group. For a group that cannot be searched this way, Error::InvalidArgument without rules.
    [[nodiscard]] static Error::Type buildRules(SearchResultGroup::Type group, const QString &term,
                                                const Coordinates &centre, bool excludeFavorites, SearchRule &rule,
                                                SortRule &sort);
    /// Converts a rule to the form that the service requires: a disjoint rule, or a connective of disjoint rules.
    static void adjustSearchRule(SearchRule &rule);

    /// The common part of all finds: adjusts the rule, sends the find, and sets the start of the next page in `handle`,
    /// if not null: after `limit` places, or for full places after the received ones. The caller owns the places.
    /// @tparam PlaceType Place for full places; for headers PlaceHeader, or AbstractPlace for mixed results.
    template <typename PlaceType>
    static QList<PlaceType *> find(const Query &query, Error::Type *error, SearchHandle *handle);
    /// The same for a mix of headers and full places.
    static QList<QSharedPointer<AbstractPlace>> findShared(const Query &query, Error::Type *error,
                                                           SearchHandle *handle);
    /// Writes an outcome to `error`, unless it is null, and returns it.
    static Error::Type report(Error::Type outcome, Error::Type *error);

private:
    using CreateRule = SearchRulePrivate::Node (*)(SearchOperator::Type, const QString &);

    static QString getProcessName();
    static QList<PlaceHeader *> findByAnyOf(CreateRule createRule, const QStringList &values, Error::Type *error,
                                            SearchHandle *handle, const SortRule &sort, int offset, int limit);
    [[nodiscard]] Error::Type favPlace(Place *place) const;
    [[nodiscard]] Error::Type favHeader(PlaceHeader *header) const;
};

} // namespace vela::platform::places
