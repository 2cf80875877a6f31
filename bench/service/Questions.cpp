// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "Questions.h"

#include "manager/PlaceManagerPrivate.h"
#include "places/PlaceHeader.h"
#include "protocol/PlacesAPIEncoder.h"

#include <QtCore/QList>

namespace bench
{

using namespace vela::platform::places;

namespace
{

constexpr std::uint64_t SEED = 4;
constexpr int PAGE = 20;
constexpr int FAR_OFFSET = 2000;
constexpr int FAILED = -1;

constexpr Limit NONE;
constexpr Limit OF_AN_ORDER{3, 1.2};
constexpr Limit OF_A_PAGE{10, 1.5};
constexpr Limit OF_A_FAR_PAGE{40, 1.5};
constexpr Limit OF_ALL_RESULTS{120, 0};

constexpr char BY_RELEVANCE[] = " ORDER BY usage_count DESC, last_used DESC, id DESC LIMIT 20";
constexpr char BY_NAME[] = " ORDER BY lower(name), id LIMIT 20";
constexpr char BY_DISTANCE[] = " ORDER BY position <-> :centre LIMIT 20";
constexpr char BY_LAST_USE[] = " ORDER BY last_used DESC, id DESC LIMIT 20";
const std::string ALL = "SELECT feature FROM place";

SortRule sortBy(SortField::Type field, SortOrder::Type order)
{
    return SortRule::createSimpleSortRule(field, order);
}

SearchRule nameRule(const char *term)
{
    return SearchRule::createNameRule(SearchOperator::Contains, QString::fromLatin1(term));
}

std::string named(const char *term)
{
    return ALL + " WHERE words @@ '" + term + ":*'::tsquery";
}

template <typename List>
int foundOf(const List &found, Error::Type error)
{
    return error == Error::Success ? found.size() : FAILED;
}

/// The same for a list of places that the caller owns.
template <typename List>
int foundOfOwn(const List &found, Error::Type error)
{
    qDeleteAll(found);
    return foundOf(found, error);
}

int outcomeOf(Error::Type error)
{
    return error == Error::Success ? 1 : FAILED;
}

std::string requestFor(qint64 id)
{
    orix_places_protocol::PlacesAPIEncoder request;
    request.encodeGetPlace(id);
    char *data = nullptr;
    int length = 0;
    request.getData(data, length);
    return std::string(data, static_cast<std::size_t>(length));
}

/// The folder of channels is chosen before the members that need it.
const ServedStore &selected(const ServedStore &store)
{
    store.select();
    return store;
}

} // namespace

Questions::Questions(const ServedStore &store)
    : m_places(selected(store).made().places)
    , m_maker(SEED)
    , m_bare(requestFor(1), Placesd::exchange(requestFor(1)), store.path("").toStdString())
    , m_stored(m_manager.getPlace(m_places / 2))
{
    addFetches();
    addOrders();
    addNames();
    addGroups();
    addKinds();
    addFarPages();
    addWrites();
}

void Questions::add(std::string name, Limit limit, std::function<int()> ask, std::string sql)
{
    m_questions.push_back({std::move(name), limit, std::move(ask), std::move(sql)});
}

void Questions::addFind(std::string name, Limit limit, const Rule &rule, const Sort &sort, std::string sql, int offset)
{
    const auto ask = [this, rule, sort, offset] {
        Error::Type error = Error::Success;
        return foundOf(m_internal.findMixedPlaces(rule, &error, nullptr, sort, offset, PAGE), error);
    };
    if (offset > 0)
        sql += " OFFSET " + std::to_string(offset);
    add(std::move(name), limit, ask, std::move(sql));
}

void Questions::addNear(std::string name, Limit limit, const Rule &rule, SortOrder::Type order, std::string sql)
{
    const auto ask = [this, rule, order] {
        Error::Type error = Error::Success;
        const SortRule sort = SortRule::createDistanceSortRule(someCentre(), order);
        return foundOf(m_internal.findMixedPlaces(rule, &error, nullptr, sort, 0, PAGE), error);
    };
    add(std::move(name), limit, ask, std::move(sql));
}

qint64 Questions::someId()
{
    return 1 + static_cast<qint64>(m_maker.below(static_cast<std::uint64_t>(m_places)));
}

const Coordinates &Questions::someCentre()
{
    return m_maker.city().position;
}

void Questions::addFetches()
{
    const auto fetch = [this] {
        Error::Type error = Error::Success;
        const std::unique_ptr<Place> place(m_manager.getPlace(someId(), &error));
        return outcomeOf(error);
    };
    add(FETCH, {0, 1.1}, fetch, ALL + " WHERE id = :id");
    add(BARE_CHANNEL, NONE, [this] { return m_bare.exchange() ? 1 : FAILED; });
    add(BARE_ROW, NONE, [this] { return m_bare.readRow(someId()) ? 1 : FAILED; });
}

void Questions::addOrders()
{
    addNear("all by distance, nearest first", OF_AN_ORDER, {}, SortOrder::Ascending, ALL + BY_DISTANCE);
    addNear("all by distance, farthest first", NONE, {}, SortOrder::Descending,
            ALL + " ORDER BY position <-> :centre DESC LIMIT 20");
    const auto recent = [this] {
        Error::Type error = Error::Success;
        return foundOfOwn(m_manager.findRecentPlaces(&error), error);
    };
    add("recent: last use, newest first", OF_AN_ORDER, recent, ALL + BY_LAST_USE);
    addFind("all by relevance", OF_AN_ORDER, {}, {}, ALL + BY_RELEVANCE);
    addFind("all by name", OF_AN_ORDER, {}, sortBy(SortField::Name, SortOrder::Ascending), ALL + BY_NAME);
    addFind("all by creation, newest first", OF_AN_ORDER, {}, sortBy(SortField::CreationTime, SortOrder::Descending),
            ALL + " ORDER BY created DESC LIMIT 20");
    addFind("all by update, newest first", OF_AN_ORDER, {}, sortBy(SortField::UpdateTime, SortOrder::Descending),
            ALL + " ORDER BY updated DESC LIMIT 20");
    addFind("all by usage count", OF_AN_ORDER, {}, sortBy(SortField::UsageCount, SortOrder::Descending),
            ALL + " ORDER BY usage_count DESC LIMIT 20");
    const auto tags = [this] {
        Error::Type error = Error::Success;
        return foundOf(m_manager.getTagsInUse(&error), error);
    };
    add("tags in use", OF_AN_ORDER, tags, "SELECT DISTINCT tag FROM tag ORDER BY tag");
    const auto equivalent = [this] {
        Error::Type error = Error::Success;
        return foundOfOwn(m_manager.findEquivalentPlaces(m_stored.get(), &error, 100), error);
    };
    add("equivalent places", OF_AN_ORDER, equivalent,
        ALL + " WHERE lower(name) = (SELECT lower(name) FROM place WHERE id = :id)");
}

void Questions::addNames()
{
    struct Term
    {
        const char *text;
        Limit listed; ///< By name and by distance.
    };
    for (const Term &term : {Term{"san", OF_ALL_RESULTS}, Term{"s", NONE}}) {
        const std::string name = std::string("\"") + term.text + "\" ";
        const SearchRule rule = nameRule(term.text);
        addFind(name + "by relevance", OF_A_PAGE, rule, {}, named(term.text) + BY_RELEVANCE);
        addFind(name + "by name", term.listed, rule, sortBy(SortField::Name, SortOrder::Ascending),
                named(term.text) + BY_NAME);
        addNear(name + "by distance", term.listed, rule, SortOrder::Ascending, named(term.text) + BY_DISTANCE);
    }
    const auto size = [rule = nameRule("san")] {
        Error::Type error = Error::Success;
        const auto count = static_cast<int>(PlaceManagerPrivate().findPlacesSize(rule, &error, {}));
        return error == Error::Success ? count : FAILED;
    };
    add("size of \"san\"", OF_ALL_RESULTS, size, "SELECT count(*) FROM place WHERE words @@ 'san:*'::tsquery");
}

void Questions::addGroup(SearchResultGroup::Type group, const char *term, Limit limit, std::string sql)
{
    const auto ask = [this, group, text = QString::fromLatin1(term)] {
        Error::Type error = Error::Success;
        return foundOf(m_internal.findPlacesByGroup(group, &error, nullptr, text, 0, PAGE, someCentre()), error);
    };
    add("group " + std::to_string(group) + (*term ? std::string(" \"") + term + "\"" : " without a term"), limit, ask,
        std::move(sql));
}

void Questions::addGroups()
{
    struct Group
    {
        SearchResultGroup::Type number;
        std::string condition; ///< In PostgreSQL, which has no contacts.
        const char *order;
    };
    const Group groups[] = {
        {SearchResultGroup::Recent, "", ""},
        {SearchResultGroup::Favorites, "id IN (SELECT place FROM tag WHERE tag = 'lbs-favorite')", BY_NAME},
        {SearchResultGroup::RecentlyPicked, "mask & 1 = 1", BY_LAST_USE},
        {SearchResultGroup::Contacts, "", ""},
        {SearchResultGroup::Local, "", ""},
        {SearchResultGroup::NonContacts, "", ""},
    };
    for (const Group &group : groups) {
        const bool isAlike = !group.condition.empty();
        addGroup(group.number, "", OF_A_PAGE, isAlike ? ALL + " WHERE " + group.condition + group.order : "");
        addGroup(group.number, "san", OF_A_PAGE, isAlike ? named("san") + " AND " + group.condition + group.order : "");
    }
    for (const auto remote :
         {SearchResultGroup::RemoteByName, SearchResultGroup::Addresses, SearchResultGroup::Suggestions})
        addGroup(remote, "san", NONE);
}

void Questions::addKinds()
{
    struct Kind
    {
        const char *name;
        const char *owner;
        const char *tag;
    };
    constexpr Kind KINDS[] = {
        {"frequent", FREQUENT_OWNER, FREQUENT_TAG},
        {"middle", MIDDLE_OWNER, MIDDLE_TAG},
        {"rare", RARE_OWNER, RARE_TAG},
    };
    for (const Kind &kind : KINDS) {
        addFind(std::string("owner, ") + kind.name, OF_A_PAGE,
                SearchRule::createOwnerRule(SearchOperator::Equals, QString::fromLatin1(kind.owner)), {},
                ALL + " WHERE owner = '" + kind.owner + "'" + BY_RELEVANCE);
    }
    for (const Kind &kind : KINDS) {
        addFind(std::string("tag, ") + kind.name, OF_A_PAGE,
                SearchRule::createTagRule(SearchOperator::Equals, QString::fromLatin1(kind.tag)), {},
                ALL + " WHERE id IN (SELECT place FROM tag WHERE tag = '" + kind.tag + "')" + BY_RELEVANCE);
    }
    addFind("type, of every place", OF_A_PAGE,
            SearchRule::createTypeRule(SearchOperator::Equals, AuxiliaryData::TypePointOfInterest), {}, {});
    addFind("type, rare", OF_A_PAGE, SearchRule::createTypeRule(SearchOperator::Equals, AuxiliaryData::TypeContact), {},
            {});
}

void Questions::addFarPages()
{
    addFind("all by name, from 2,000 on", OF_A_FAR_PAGE, {}, sortBy(SortField::Name, SortOrder::Ascending),
            ALL + BY_NAME, FAR_OFFSET);
    addFind("all by relevance, from 2,000 on", OF_A_FAR_PAGE, {}, {}, ALL + BY_RELEVANCE, FAR_OFFSET);
    addFind("\"san\" by relevance, from 2,000 on", OF_A_FAR_PAGE, nameRule("san"), {}, named("san") + BY_RELEVANCE,
            FAR_OFFSET);
}

void Questions::addWrites()
{
    const auto addPlace = [this] {
        const std::unique_ptr<Place> place = m_maker.next().place;
        return outcomeOf(m_manager.addPlace(place.get()));
    };
    add("add a place and fetch it back", NONE, addPlace,
        "INSERT INTO place(id, name, feature, usage_count, last_used, latitude, longitude) "
        "SELECT (SELECT max(id) + 1 FROM place), name, feature, 0, 0, latitude, longitude FROM place WHERE id = :id");
    const auto update = [this] {
        m_stored->setDescription(QString::number(m_maker.below(1000)));
        return outcomeOf(m_manager.updatePlace(m_stored.get()));
    };
    add("update a place", NONE, update, "UPDATE place SET feature = feature || ' ' WHERE id = :id");
    const auto use = [this] { return outcomeOf(m_manager.usePlace(someId())); };
    add("use a place", NONE, use,
        "UPDATE place SET usage_count = usage_count + 1, last_used = last_used + 1 WHERE id = :id");
}

} // namespace bench
