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
constexpr int EQUIVALENCE_RADIUS = 100; // metres
constexpr int FAILED = -1;

constexpr Limit NONE;
constexpr Limit OF_AN_ORDER{3, 1.2};
constexpr Limit OF_A_PAGE{10, 1.5};
constexpr Limit OF_A_FAR_PAGE{40, 1.5};
constexpr Limit OF_ALL_RESULTS{120, 0};

SortRule sortBy(SortField::Type field, SortOrder::Type order)
{
    return SortRule::createSimpleSortRule(field, order);
}

SearchRule nameRule(const char *term)
{
    return SearchRule::createNameRule(SearchOperator::Contains, QString::fromLatin1(term));
}

std::string quoted(const std::string &term)
{
    return '"' + term + '"';
}

/// @param error a reference, because creating the list writes it.
template <typename List>
int foundOf(const List &found, const Error::Type &error)
{
    return error == Error::Success ? found.size() : FAILED;
}

/// The same for a list of places that the caller owns.
template <typename List>
int foundOfOwn(const List &found, const Error::Type &error)
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

/// Selects the channel folder before members are initialized that need it.
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

void Questions::add(std::string name, Limit limit, std::function<int()> ask)
{
    m_questions.push_back({std::move(name), limit, std::move(ask)});
}

void Questions::addFind(std::string name, Limit limit, const Rule &rule, const Sort &sort, int offset)
{
    add(std::move(name), limit, [this, rule, sort, offset] {
        Error::Type error = Error::Success;
        return foundOf(m_internal.findMixedPlaces(rule, &error, nullptr, sort, offset, PAGE), error);
    });
}

void Questions::addNear(std::string name, Limit limit, const Rule &rule, SortOrder::Type order)
{
    add(std::move(name), limit, [this, rule, order] {
        Error::Type error = Error::Success;
        const SortRule sort = SortRule::createDistanceSortRule(someCentre(), order);
        return foundOf(m_internal.findMixedPlaces(rule, &error, nullptr, sort, 0, PAGE), error);
    });
}

void Questions::addGroup(SearchResultGroup::Type group, const char *term, Limit limit)
{
    const std::string name = "group " + std::to_string(group) + " ";
    add(name + (*term ? quoted(term) : "without a term"), limit, [this, group, text = QString::fromLatin1(term)] {
        Error::Type error = Error::Success;
        return foundOf(m_internal.findPlacesByGroup(group, &error, nullptr, text, 0, PAGE, someCentre()), error);
    });
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
    add(FETCH, {0, 1.1}, [this] {
        Error::Type error = Error::Success;
        const std::unique_ptr<Place> place(m_manager.getPlace(someId(), &error));
        return outcomeOf(error);
    });
    add(BARE_CHANNEL, NONE, [this] { return m_bare.exchange() ? 1 : FAILED; });
    add(BARE_ROW, NONE, [this] { return m_bare.readRow(someId()) ? 1 : FAILED; });
}

void Questions::addOrders()
{
    addNear("all by distance, nearest first", OF_AN_ORDER, {}, SortOrder::Ascending);
    addNear("all by distance, farthest first", NONE, {}, SortOrder::Descending);
    add("recent: last use, newest first", OF_AN_ORDER, [this] {
        Error::Type error = Error::Success;
        return foundOfOwn(m_manager.findRecentPlaces(&error), error);
    });
    addFind("all by relevance", OF_AN_ORDER, {}, {});
    addFind("all by name", OF_AN_ORDER, {}, sortBy(SortField::Name, SortOrder::Ascending));
    addFind("all by creation, newest first", OF_AN_ORDER, {}, sortBy(SortField::CreationTime, SortOrder::Descending));
    addFind("all by update, newest first", OF_AN_ORDER, {}, sortBy(SortField::UpdateTime, SortOrder::Descending));
    addFind("all by usage count", OF_AN_ORDER, {}, sortBy(SortField::UsageCount, SortOrder::Descending));
    add("tags in use", OF_AN_ORDER, [this] {
        Error::Type error = Error::Success;
        return foundOf(m_manager.getTagsInUse(&error), error);
    });
    add("equivalent places", OF_AN_ORDER, [this] {
        Error::Type error = Error::Success;
        return foundOfOwn(m_manager.findEquivalentPlaces(m_stored.get(), &error, EQUIVALENCE_RADIUS), error);
    });
}

void Questions::addNames()
{
    struct Term
    {
        const char *text;
        Limit listed; ///< By name and by distance.
    };
    for (const Term &term : {Term{"san", OF_ALL_RESULTS}, Term{"s", NONE}}) {
        const std::string name = quoted(term.text);
        const SearchRule rule = nameRule(term.text);
        addFind(name + " by relevance", OF_A_PAGE, rule, {});
        addFind(name + " by name", term.listed, rule, sortBy(SortField::Name, SortOrder::Ascending));
        addNear(name + " by distance", term.listed, rule, SortOrder::Ascending);
    }
    add("size of \"san\"", OF_ALL_RESULTS, [rule = nameRule("san")] {
        Error::Type error = Error::Success;
        const auto count = static_cast<int>(PlaceManagerPrivate().findPlacesSize(rule, &error, {}));
        return error == Error::Success ? count : FAILED;
    });
}

void Questions::addGroups()
{
    for (const auto stored :
         {SearchResultGroup::Recent, SearchResultGroup::Favorites, SearchResultGroup::RecentlyPicked,
          SearchResultGroup::Contacts, SearchResultGroup::Local, SearchResultGroup::NonContacts}) {
        addGroup(stored, "", OF_A_PAGE);
        addGroup(stored, "san", OF_A_PAGE);
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
        SearchRule (*rule)(SearchOperator::Type, const QString &);
        QString value;
    };
    const Kind kinds[] = {
        {"owner, frequent", SearchRule::createOwnerRule, QString::fromLatin1(FREQUENT_OWNER)},
        {"owner, middle", SearchRule::createOwnerRule, QString::fromLatin1(MIDDLE_OWNER)},
        {"owner, rare", SearchRule::createOwnerRule, QString::fromLatin1(RARE_OWNER)},
        {"tag, frequent", SearchRule::createTagRule, QString::fromLatin1(FREQUENT_TAG)},
        {"tag, middle", SearchRule::createTagRule, QString::fromLatin1(MIDDLE_TAG)},
        {"tag, rare", SearchRule::createTagRule, QString::fromLatin1(RARE_TAG)},
        {"type, of every place", SearchRule::createTypeRule, AuxiliaryData::TypePointOfInterest},
        {"type, rare", SearchRule::createTypeRule, AuxiliaryData::TypeContact},
    };
    for (const Kind &kind : kinds)
        addFind(kind.name, OF_A_PAGE, kind.rule(SearchOperator::Equals, kind.value), {});
}

void Questions::addFarPages()
{
    addFind("all by name, from 2,000 on", OF_A_FAR_PAGE, {}, sortBy(SortField::Name, SortOrder::Ascending), FAR_OFFSET);
    addFind("all by relevance, from 2,000 on", OF_A_FAR_PAGE, {}, {}, FAR_OFFSET);
    addFind("\"san\" by relevance, from 2,000 on", OF_A_FAR_PAGE, nameRule("san"), {}, FAR_OFFSET);
}

void Questions::addWrites()
{
    add("add a place and fetch it back", NONE, [this] {
        const std::unique_ptr<Place> place = m_maker.next().place;
        return outcomeOf(m_manager.addPlace(place.get()));
    });
    add("update a place", NONE, [this] {
        m_stored->setDescription(QString::number(m_maker.below(1000)));
        return outcomeOf(m_manager.updatePlace(m_stored.get()));
    });
    add("use a place", NONE, [this] { return outcomeOf(m_manager.usePlace(someId())); });
}

} // namespace bench
