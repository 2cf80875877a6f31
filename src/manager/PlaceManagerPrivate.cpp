// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "manager/PlaceManagerPrivate.h"

#include "auxdata/AuxiliaryDataReplyData.h"
#include "model/PlaceHeaderPrivate.h"
#include "model/PlacePrivate.h"
#include "places/AuxiliaryDataRequest.h"
#include "places/Tags.h"
#include "places/Utilities.h"
#include "protocol/Logger.h"
#include "protocol/Protocol.h"
#include "search/SearchHandlePrivate.h"

#include <QtCore/QtNumeric>
#include <QtCore/QVariant>

#include <algorithm>
#include <memory>
#include <type_traits>
#include <utility>

namespace vela::platform::places
{

namespace reply = orix_places_protocol::reply;
using Node = SearchRulePrivate::Node;
using Rules = SearchRulePrivate;

namespace
{

constexpr int RECENT_AND_SAVED = PlacePrivate::RECENT_AND_SAVED;

/// Maximum number of candidates for findEquivalentPlaces().
constexpr int MAX_EQUIVALENT_PLACES = 100;

Node disjoint(Node rule)
{
    return std::make_unique<DisjointRule>(std::move(rule));
}

Node withoutFavorites(Node rule, bool excludeFavorites)
{
    if (!excludeFavorites)
        return rule;
    return std::make_unique<AndRule>(std::move(rule), Rules::createExcludeFavoritesRule());
}

SearchRule toRule(Node node)
{
    SearchRule rule;
    Rules::setPrivate(rule, node.release());
    return rule;
}

bool isDisjoint(const SearchRulePrivate *rule)
{
    return dynamic_cast<const DisjointRule *>(rule);
}

SortRule byName()
{
    return SortRule::createSimpleSortRule(SortField::Name, SortOrder::Ascending);
}

SortRule byLastUse()
{
    return SortRule::createSimpleSortRule(SortField::LastUsedTime, SortOrder::Descending);
}

/// A value that an application attached to a place: a property of the object, else of one of its auxiliary records.
QVariant extendedValue(const AbstractPlace &place, const char *name)
{
    if (QVariant value = place.property(name); value.isValid())
        return value;
    const auto *full = dynamic_cast<const Place *>(&place);
    if (!full)
        return {};
    for (const AuxiliaryData &data : PlacePrivate::privateFromPublic(full)->auxiliaryData()) {
        if (QVariant value = data.qvariantProperty(QLatin1String(name)); value.isValid())
            return value;
    }
    return {};
}

/// Degrees that an application attached to a place; NaN without a value.
double extendedDegrees(const AbstractPlace &place, const char *name)
{
    bool isNumber = false;
    const double degrees = extendedValue(place, name).toDouble(&isNumber);
    return isNumber ? degrees : qQNaN();
}

/// The key of a suggestion at the service.
QString suggestionText(const AbstractPlace &place)
{
    if (const auto *header = dynamic_cast<const PlaceHeader *>(&place)) {
        QString externalId = PlaceHeaderPrivate::privateFromPublic(header)->externalId();
        if (!externalId.isEmpty())
            return externalId;
    }
    return place.name();
}

/// True when a candidate has the name and the position of the place.
bool isEquivalent(const PlaceHeader &candidate, const QString &name, const Coordinates &position, int radius)
{
    const Coordinates other = candidate.primaryCoordinates();
    if (candidate.name() != name)
        return false;
    if (radius != 0 && position.isValid() && other.isValid())
        return Utilities::calculateDistanceInMeter(position, other) <= radius;
    return position == other;
}

} // namespace

// ------------------------------------------------------------------------------------------------- stored places

Error::Type PlaceManagerPrivate::addPlace(Place *place, int persistenceMask) const
{
    if (!place || place->isPersisted() || !place->isValid())
        return Error::InvalidArgument;
    PlacePrivate &data = *PlacePrivate::privateFromPublic(place);
    data.setOwner(getProcessName());
    data.setPersistenceMask(persistenceMask);
    if (data.name().isEmpty())
        data.setName(QStringLiteral("Unnamed Place"));

    long long id = PlaceId::UNDEFINED_PERSISTED_ID;
    const Error::Type error = Protocol().exchange(
        reply::Short, [&](auto &request) { return request.encodeAddPlace(*place); },
        [&](auto &answer) { return answer.decodeAddPlaceResponse(id); });
    if (error != Error::Success)
        return error;
    data.setId(id);

    PlaceHeader *header = nullptr;
    (void)getHeader(*place, header); // Null on failure.
    const std::unique_ptr<PlaceHeader> ownedHeader(header);
    const std::unique_ptr<Place> stored(header ? getPlace(header, nullptr) : nullptr);
    if (stored)
        data = *PlacePrivate::privateFromPublic(stored.get());
    else
        Logger::error("PMP: can't retrieve saved place.");
    return Error::Success;
}

Error::Type PlaceManagerPrivate::updatePlace(Place *place, int persistenceMask) const
{
    if (!place || !place->isPersisted() || !place->isValid())
        return Error::InvalidArgument;
    PlacePrivate &data = *PlacePrivate::privateFromPublic(place);
    data.setPersistenceMask(persistenceMask);
    data.takeSearchTerm();
    return Protocol().exchange(reply::Short, [&](auto &request) { return request.encodeUpdatePlace(*place); });
}

Error::Type PlaceManagerPrivate::removePlace(qint64 id) const
{
    return Protocol().exchange(reply::Bare, [&](auto &request) { return request.encodeRemovePlace(id); });
}

Error::Type PlaceManagerPrivate::removePlace(const AbstractPlace *place) const
{
    if (!place)
        return Error::InvalidArgument;
    const Error::Type error =
        Protocol().exchange(reply::Bare, [&](auto &request) { return request.encodeRemovePlace(*place); });
    if (error != Error::Success)
        return error;
    AbstractPlacePrivate *data = AbstractPlacePrivate::mutablePrivate(*place);
    Q_ASSERT(data);
    if (auto *full = dynamic_cast<PlacePrivate *>(data))
        full->clearPersistedStates();
    data->setId(PlaceId::UNDEFINED_PERSISTED_ID);
    return error;
}

Place *PlaceManagerPrivate::getPlace(qint64 id, Error::Type *error) const
{
    Place *place = nullptr;
    const Error::Type outcome = Protocol().exchange(
        reply::Place, [&](auto &request) { return request.encodeGetPlace(id); },
        [&](auto &answer) { return answer.decodeGetPlaceResponse(place); });
    report(outcome, error);
    return place;
}

Place *PlaceManagerPrivate::getPlace(const PlaceHeader *header, Error::Type *error) const
{
    if (!header) {
        report(Error::InvalidArgument, error);
        return nullptr;
    }
    Place *place = nullptr;
    const Error::Type outcome = Protocol().exchange(
        reply::Place, [&](auto &request) { return request.encodeGetPlace(*header); },
        [&](auto &answer) { return answer.decodeGetPlaceResponse(place); });
    if (place)
        PlacePrivate::privateFromPublic(place)->setCertainty(header->certainty());
    report(outcome, error);
    return place;
}

Place *PlaceManagerPrivate::getPlace(const AbstractPlace *place, Error::Type *error) const
{
    if (!place) {
        report(Error::InvalidArgument, error);
        return nullptr;
    }
    if (place->isPersisted())
        return getPlace(place->id(), error);
    const Coordinates centre(extendedDegrees(*place, "searchLatitude"), extendedDegrees(*place, "searchLongitude"));
    Place *resolved = nullptr;
    report(Protocol().getPlaceFromSuggestion(Utilities::toStdString(suggestionText(*place)), centre, resolved), error);
    return resolved;
}

Error::Type PlaceManagerPrivate::getHeader(const Place &place, PlaceHeader *&header) const
{
    return Protocol().getHeaderFromFullPlace(place, header);
}

Error::Type PlaceManagerPrivate::usePlace(qint64 id) const
{
    return Protocol().incrementUsage(id, {});
}

Error::Type PlaceManagerPrivate::usePlace(AbstractPlace *place) const
{
    if (!place || !place->isPersisted())
        return Error::InvalidArgument;
    const QString searchTerm = AbstractPlacePrivate::privateFromPublic(place)->takeSearchTerm();
    return Protocol().incrementUsage(place->id(), Utilities::toStdString(searchTerm));
}

// ---------------------------------------------------------------------------------------------------- favourites

Error::Type PlaceManagerPrivate::fav(AbstractPlace *place) const
{
    if (auto *full = dynamic_cast<Place *>(place))
        return favPlace(full);
    if (auto *header = dynamic_cast<PlaceHeader *>(place))
        return favHeader(header);
    return Error::InvalidArgument;
}

Error::Type PlaceManagerPrivate::favPlace(Place *place) const
{
    PlacePrivate &data = *PlacePrivate::privateFromPublic(place);
    const PlacePrivate before = data;
    data.addTag(Tags::Favorite);
    const Error::Type error =
        place->isPersisted() ? updatePlace(place, RECENT_AND_SAVED) : addPlace(place, RECENT_AND_SAVED);
    if (error != Error::Success)
        data = before;
    return error;
}

Error::Type PlaceManagerPrivate::favHeader(PlaceHeader *header) const
{
    Error::Type error = Error::Success;
    const std::unique_ptr<Place> full(getPlace(static_cast<AbstractPlace *>(header), &error));
    if (!full)
        return error;
    error = favPlace(full.get());
    if (error == Error::Success) {
        PlaceHeaderPrivate &data = *PlaceHeaderPrivate::privateFromPublic(header);
        data.setId(full->id());
        data.setTagBit(Tags::Favorite, true);
    }
    return error;
}

Error::Type PlaceManagerPrivate::unfav(AbstractPlace *place) const
{
    if (!place || !place->isPersisted() || !place->isFavorite())
        return Error::InvalidArgument;
    bool stillStored = true;
    const Error::Type error = Protocol().unfav(place->id(), stillStored);
    if (error != Error::Success)
        return error;

    AbstractPlacePrivate *data = AbstractPlacePrivate::privateFromPublic(place);
    Q_ASSERT(data);
    if (auto *full = dynamic_cast<PlacePrivate *>(data))
        full->removeTag(Tags::Favorite);
    else if (auto *header = dynamic_cast<PlaceHeaderPrivate *>(data))
        header->setTagBit(Tags::Favorite, false);
    if (!stillStored)
        data->setId(PlaceId::UNDEFINED_PERSISTED_ID);
    return error;
}

// --------------------------------------------------------------------------------------- tags and recent places

Error::Type PlaceManagerPrivate::addTag(qint64 id, const QString &tag) const
{
    return Protocol().addTag(id, Utilities::toStdString(tag));
}

Error::Type PlaceManagerPrivate::removeTag(qint64 id, const QString &tag) const
{
    return Protocol().removeTag(id, Utilities::toStdString(tag));
}

QStringList PlaceManagerPrivate::getTagsInUse(Error::Type *error) const
{
    QStringList tags;
    (void)Protocol().getTagsInUse(tags, error); // Written to `error`.
    return tags;
}

Error::Type PlaceManagerPrivate::addRecentlyPickedPlace(Place *place) const
{
    if (!place)
        return Error::InvalidArgument;
    return addPlace(place, place->hasTag(Tags::Favorite) ? RECENT_AND_SAVED : PlacePrivate::InRecentBucket);
}

Error::Type PlaceManagerPrivate::clearRecentlyPickedPlaces() const
{
    return Protocol().clearRecentlyPickedPlaces();
}

// --------------------------------------------------------------------------------------------------------- finds

template <typename PlaceType>
QList<PlaceType *> PlaceManagerPrivate::find(const Query &query, Error::Type *error, SearchHandle *handle)
{
    constexpr bool HEADER_ONLY = !std::is_same_v<PlaceType, Place>;
    SearchRule rule = query.rule;
    adjustSearchRule(rule);

    QList<PlaceType *> found;
    const Error::Type outcome = Protocol().exchange(
        reply::List,
        [&](auto &request) {
            return request.encodeFindPlaces(rule, query.sort, query.offset, query.limit, HEADER_ONLY, query.centre, -1,
                                            -1);
        },
        [&](auto &answer) { return answer.decodeFindPlaces(found, handle); });
    if (outcome == Error::Success && handle) {
        SearchHandlePrivate &state = *SearchHandlePrivate::privateFromPublic(handle);
        state.setIndexBehind(query.offset, HEADER_ONLY ? query.limit : static_cast<int>(found.size()));
        state.setSearchRule(rule);
        state.setSortRule(query.sort);
        state.setHeaderOnly(HEADER_ONLY);
        state.setMapCenter(query.centre);
    }
    report(outcome, error);
    return found;
}

template QList<Place *> PlaceManagerPrivate::find(const Query &, Error::Type *, SearchHandle *);
template QList<PlaceHeader *> PlaceManagerPrivate::find(const Query &, Error::Type *, SearchHandle *);
template QList<AbstractPlace *> PlaceManagerPrivate::find(const Query &, Error::Type *, SearchHandle *);

QList<QSharedPointer<AbstractPlace>> PlaceManagerPrivate::findShared(const Query &query, Error::Type *error,
                                                                     SearchHandle *handle)
{
    const QList<AbstractPlace *> places = find<AbstractPlace>(query, error, handle);
    QList<QSharedPointer<AbstractPlace>> found;
    for (AbstractPlace *place : places)
        found.append(QSharedPointer<AbstractPlace>(place));
    return found;
}

QList<PlaceHeader *> PlaceManagerPrivate::findPlaces(const QString &term, Error::Type *error, SearchHandle *handle,
                                                     const SortRule &sort, int offset, int limit, bool includeRemote,
                                                     const Coordinates &centre) const
{
    auto rule = std::make_unique<OrRule>(disjoint(Rules::createNameRule(SearchOperator::Contains, term)),
                                         disjoint(Rules::createContactQueryRule(term)));
    if (includeRemote && centre.isValid())
        rule->append(disjoint(Rules::createPOINameRule(term)));
    return find<PlaceHeader>({toRule(std::move(rule)), sort, offset, limit, centre}, error, handle);
}

QList<PlaceHeader *> PlaceManagerPrivate::findMyPlaces(Error::Type *error, SearchHandle *handle, const SortRule &sort,
                                                       int offset, int limit) const
{
    return find<PlaceHeader>({toRule(Rules::createMyPlacesRule(getProcessName())), sort, offset, limit, Coordinates()},
                             error, handle);
}

QList<PlaceHeader *> PlaceManagerPrivate::findRecentPlaces(Error::Type *error, SearchHandle *handle, bool onlyMine,
                                                           unsigned int since, int offset, int limit) const
{
    Node mine = onlyMine ? Rules::createMyPlacesRule(getProcessName()) : nullptr;
    Node used = since != 0 ? Rules::createLastUsedTimeRule(SearchOperator::GreaterOrEqual, since) : nullptr;
    SearchRule rule;
    if (mine && used)
        rule = toRule(Rules::createAndRule(std::move(mine), std::move(used)));
    else if (mine || used)
        rule = toRule(mine ? std::move(mine) : std::move(used));
    return find<PlaceHeader>({rule, byLastUse(), offset, limit, Coordinates()}, error, handle);
}

QList<PlaceHeader *> PlaceManagerPrivate::findByAnyOf(CreateRule createRule, const QStringList &values,
                                                      Error::Type *error, SearchHandle *handle, const SortRule &sort,
                                                      int offset, int limit)
{
    Node rule;
    if (values.size() == 1) {
        rule = createRule(SearchOperator::Equals, values.first());
    } else {
        auto any = std::make_unique<OrRule>();
        for (const QString &value : values)
            any->append(createRule(SearchOperator::Equals, value));
        rule = std::move(any);
    }
    return find<PlaceHeader>({toRule(std::move(rule)), sort, offset, limit, Coordinates()}, error, handle);
}

QList<PlaceHeader *> PlaceManagerPrivate::findPlacesByOwners(const QStringList &owners, Error::Type *error,
                                                             SearchHandle *handle, const SortRule &sort, int offset,
                                                             int limit) const
{
    return findByAnyOf(Rules::createOwnerRule, owners, error, handle, sort, offset, limit);
}

QList<PlaceHeader *> PlaceManagerPrivate::findPlacesByTypes(const QStringList &types, Error::Type *error,
                                                            SearchHandle *handle, const SortRule &sort, int offset,
                                                            int limit) const
{
    return findByAnyOf(Rules::createTypeRule, types, error, handle, sort, offset, limit);
}

QList<PlaceHeader *> PlaceManagerPrivate::findPlacesByTags(const QStringList &tags, Error::Type *error,
                                                           SearchHandle *handle, const SortRule &sort, int offset,
                                                           int limit) const
{
    return findByAnyOf(Rules::createTagRule, tags, error, handle, sort, offset, limit);
}

QList<PlaceHeader *> PlaceManagerPrivate::findEquivalentPlaces(const Place *place, Error::Type *error, int radius) const
{
    if (!place) {
        report(Error::InvalidArgument, error);
        return {};
    }
    const QString name = place->name().isEmpty() ? place->primaryLocation() : place->name();
    const Coordinates position = place->primaryCoordinates();
    QList<PlaceHeader *> found = find<PlaceHeader>(
        {SearchRule::createNameRule(SearchOperator::Equals, name), SortRule(), 0, MAX_EQUIVALENT_PLACES, Coordinates()},
        error, nullptr);
    const auto dropped = std::stable_partition(found.begin(), found.end(), [&](const PlaceHeader *candidate) {
        return isEquivalent(*candidate, name, position, radius);
    });
    qDeleteAll(dropped, found.end());
    found.erase(dropped, found.end());
    return found;
}

// -------------------------------------------------------------------------------------------------------- groups

Error::Type PlaceManagerPrivate::buildRules(SearchResultGroup::Type group, const QString &term, const Coordinates &,
                                            bool excludeFavorites, SearchRule &rule, SortRule &sort)
{
    const auto recentlyPicked = [&] {
        return disjoint(withoutFavorites(Rules::createQueryRecentlyPickedRule(term), excludeFavorites));
    };
    const auto contacts = [&] {
        return disjoint(withoutFavorites(Rules::createContactQueryRule(term), excludeFavorites));
    };

    switch (group) {
    case SearchResultGroup::Recent:
        rule = toRule(std::make_unique<AndRule>(recentlyPicked(), disjoint(Rules::createRecentSearchTermsRule())));
        sort = byLastUse();
        return Error::Success;
    case SearchResultGroup::Favorites:
        if (excludeFavorites) {
            Logger::error("PMP: can't exclude favs for gid Favorite");
            return Error::InvalidArgument;
        }
        rule =
            toRule(disjoint(term.isEmpty() ? Rules::createListFavoriteRule()
                                           : Rules::createQueryTagRule(SearchOperator::Equals, Tags::Favorite, term)));
        sort = byName();
        return Error::Success;
    case SearchResultGroup::RecentlyPicked:
        rule = toRule(recentlyPicked());
        sort = byLastUse();
        return Error::Success;
    case SearchResultGroup::Contacts:
        rule = toRule(contacts());
        return Error::Success;
    case SearchResultGroup::Local: {
        auto local = std::make_unique<AndRule>();
        // Without favourites there are no meeting rooms either: that search is for places that were not picked yet.
        if (!excludeFavorites)
            local->append(disjoint(Rules::createMeetingRoomRule(term)));
        local->append(disjoint(withoutFavorites(Rules::createNonContactQueryRule(term), excludeFavorites)));
        local->append(contacts());
        rule = toRule(std::move(local));
        sort = byName();
        return Error::Success;
    }
    case SearchResultGroup::RemoteByName:
        rule = toRule(disjoint(Rules::createRemotePlacesRule(term, false)));
        return Error::Success;
    case SearchResultGroup::Addresses:
        rule = toRule(disjoint(Rules::createGeocodeAddressRule(term)));
        return Error::Success;
    case SearchResultGroup::PointsOfInterest:
        rule = toRule(disjoint(Rules::createPOINameRule(term)));
        return Error::Success;
    case SearchResultGroup::Suggestions:
        rule = toRule(disjoint(Rules::createSuggestionRule(term)));
        return Error::Success;
    case SearchResultGroup::Categories:
        rule = toRule(disjoint(Rules::createPOICategoryRule(term)));
        return Error::Success;
    case SearchResultGroup::CategorySuggestions:
        rule = toRule(disjoint(Rules::createPOICategorySuggestionRule(term)));
        return Error::Success;
    case SearchResultGroup::NonContacts:
        rule = toRule(disjoint(Rules::createNonContactQueryRule(term)));
        sort = byName();
        return Error::Success;
    case SearchResultGroup::Remote:
        rule = toRule(disjoint(Rules::createRemotePlacesRule(term, true)));
        return Error::Success;
    case SearchResultGroup::None:
        break;
    }
    Logger::error("PMP: invalid group %d", static_cast<int>(group));
    return Error::InvalidArgument;
}

void PlaceManagerPrivate::adjustSearchRule(SearchRule &rule)
{
    const SearchRulePrivate *node = Rules::privateFromPublic(rule);
    Q_ASSERT(node);
    if (isDisjoint(node))
        return;
    if (const auto *connective = dynamic_cast<const ConnectiveRule *>(node)) {
        const auto members = connective->getRules();
        if (std::all_of(members.begin(), members.end(), isDisjoint))
            return;
    }
    Rules::setPrivate(rule, disjoint(Node(node->clone())).release());
}

QList<QSharedPointer<AbstractPlace>> PlaceManagerPrivate::findPlacesByGroup(SearchResultGroup::Type group,
                                                                            Error::Type *error, SearchHandle *handle,
                                                                            const QString &term, int offset, int limit,
                                                                            const Coordinates &centre,
                                                                            bool excludeFavorites) const
{
    Query query{SearchRule(), SortRule(), offset, limit, centre};
    if (report(buildRules(group, term, centre, excludeFavorites, query.rule, query.sort), error) != Error::Success)
        return {};
    return findShared(query, error, handle);
}

unsigned int PlaceManagerPrivate::findPlacesSizeByGroup(SearchResultGroup::Type group, Error::Type *error,
                                                        const QString &term, const Coordinates &centre) const
{
    SearchRule rule;
    SortRule sort;
    if (report(buildRules(group, term, centre, false, rule, sort), error) != Error::Success)
        return 0;
    return findPlacesSize(rule, error, centre);
}

unsigned int PlaceManagerPrivate::findPlacesSize(const SearchRule &rule, Error::Type *error,
                                                 const Coordinates &centre) const
{
    return Protocol().findPlacesSize(rule, error, centre);
}

QList<AbstractPlace *> PlaceManagerPrivate::findMorePlaces(SearchHandle &handle, int count, Error::Type &error,
                                                           int position) const
{
    const SearchHandlePrivate &state = *SearchHandlePrivate::privateFromPublic(&handle);
    const auto known = static_cast<qint64>(state.indices().size());
    if (position >= 0 && position < known)
        return Protocol().findPreviousPlaces(handle, position, count, error);
    if (position > known || state.index() == 0) {
        error = Error::InvalidArgument;
        return {};
    }
    return Protocol().findNextPlaces(handle, count, error);
}

// ----------------------------------------------------------------------------------------------------- providers

Error::Type PlaceManagerPrivate::getAuxiliaryData(const AuxiliaryDataRequest &request, AuxiliaryDataReply &reply) const
{
    QList<AuxiliaryData> found;
    const Error::Type error = request.isValid() ? Protocol().getAuxiliaryData(request, found) : Error::InvalidArgument;
    AuxiliaryDataReplyData &data = *AuxiliaryDataReplyData::fromPublic(reply);
    data.place = request.place();
    data.userDefinedValue = request.userDefinedValue();
    data.data = found;
    data.status = error;
    data.reason = Error::reason(error);
    return error;
}

Error::Type PlaceManagerPrivate::getSupportedProviders(QList<Provider> &providers) const
{
    return Protocol().getSupportedProviders(providers);
}

Error::Type PlaceManagerPrivate::report(Error::Type outcome, Error::Type *error)
{
    if (error)
        *error = outcome;
    return outcome;
}

QString PlaceManagerPrivate::getProcessName()
{
    const QByteArray name = qgetenv("PLACE_CARD_INVOKER_DNAME");
    return name.isEmpty() ? QString() : QString::fromLatin1(name);
}

} // namespace vela::platform::places
