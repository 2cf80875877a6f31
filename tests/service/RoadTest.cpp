// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "manager/PlaceManagerPrivate.h"
#include "model/PlaceHeaderPrivate.h"
#include "places/InternalPlaceManager.h"
#include "places/PlaceHeader.h"
#include "places/PlaceManager.h"
#include "places/Tags.h"
#include "support/Placesd.h"
#include "support/SamplePlace.h"

#include <gmock/gmock.h>

using namespace vela::platform::places;
using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

PlacePrivate &dataOf(Place &place)
{
    return *PlacePrivate::privateFromPublic(&place);
}

/// The road from the public interface to the database and back.
class RoadTest : public testing::Test
{
protected:
    qint64 add(const char *name, const std::function<void(Place &)> &shape = {})
    {
        Place place;
        Location location;
        location.setCoordinates(Coordinates(46, 7));
        place.addLocation(location);
        place.setName(QString::fromUtf8(name));
        if (shape)
            shape(place);
        EXPECT_EQ(manager.addPlace(&place), Error::Success) << name;
        return place.id();
    }

    std::unique_ptr<Place> get(qint64 id) { return std::unique_ptr<Place>(manager.getPlace(id, &error)); }

    /// Names of places, which are freed.
    template <typename List>
    static std::vector<std::string> names(const List &places)
    {
        std::vector<std::string> names;
        for (const auto *place : places)
            names.push_back(place->name().toStdString());
        qDeleteAll(places);
        return names;
    }

    unsigned count(const SearchRule &rule)
    {
        SearchRule adjusted = rule;
        PlaceManagerPrivate::adjustSearchRule(adjusted);
        return internal.findPlacesSize(adjusted, &error, Coordinates());
    }

    Placesd service;
    PlaceManager manager;
    PlaceManagerPrivate internal;
    Error::Type error = Error::Unspecified;
};

} // namespace

TEST_F(RoadTest, APlaceComesBackAsItWasStored)
{
    Place place;
    sample::fill(place, -1);
    ASSERT_EQ(manager.addPlace(&place), Error::Success);
    const std::unique_ptr<Place> stored = get(place.id());
    ASSERT_TRUE(stored);
    EXPECT_TRUE(dataOf(*stored) == dataOf(place));
    EXPECT_EQ(stored->securityPerimeter(), vela::system::SecurityPerimeter::Work);
    EXPECT_GT(stored->creationTime(), 1700000000U);

    stored->setName(QStringLiteral("Renamed \xF0\x9F\x98\x80"));
    stored->addLocation(Location(stored->location(0)));
    ASSERT_EQ(manager.updatePlace(stored.get()), Error::Success);
    const std::unique_ptr<Place> updated = get(place.id());
    EXPECT_EQ(updated->name(), stored->name());
    EXPECT_NE(updated->location(1).id(), stored->location(0).id()) << "two parts never have one id";
    EXPECT_EQ(updated->creationTime(), place.creationTime());

    EXPECT_EQ(manager.removePlace(place.id()), Error::Success);
    EXPECT_EQ(get(place.id()), nullptr);
    EXPECT_EQ(error, Error::NotFound);
    EXPECT_NE(add("Next"), place.id()) << "an id is never given twice";
}

TEST_F(RoadTest, NamesAreFoundByTheBeginningsOfTheirWords)
{
    for (const char *name :
         {"Café de la Paix", "Zürich Airport", "Saint-Étienne", "100% \"Real\" *", "Ｗｅｉßer ﬁsh", "かき"})
        add(name);
    const struct
    {
        const char *term;
        std::vector<std::string> found;
    } cases[] = {
        {"cafe", {"Café de la Paix"}},       {"afe", {}},
        {"zur air", {"Zürich Airport"}},     {"saint-etienne", {"Saint-Étienne"}},
        {"\"real\" NOT cafe", {}},           {"'; DROP TABLE place; --", {}},
        {"weisser FISH", {"Ｗｅｉßer ﬁsh"}}, {"がき", {}},
        {"*", {"100% \"Real\" *"}},
    };
    for (const auto &row : cases)
        EXPECT_EQ(names(manager.findPlaces(QString::fromUtf8(row.term), &error)), row.found) << row.term;
    EXPECT_EQ(names(manager.findPlaces(QString())).size(), 6U);
}

TEST_F(RoadTest, ATermIsReadInTheFirstWayThatFindsAnything)
{
    const qint64 hut = add("Berghaus", [](Place &place) {
        Address address;
        address.setCity(QStringLiteral("Grindelwald"));
        Location location;
        location.setAddress(address);
        place.addLocation(location);
        place.setDescription(QStringLiteral("fondue by the fire"));
        place.addTag(QStringLiteral("ski-hut"));
        AuxiliaryData record(QStringLiteral("x-other"));
        record.addProperty(QStringLiteral("name:it"), QStringLiteral("Casa di montagna"));
        place.addAuxiliaryData(record);
    });
    for (const char *name :
         {"Zürich Airport", "Zürich See", "Łódź", "Glück auf", "Москва", "東京タワー", "Fire station"})
        add(name);
    const struct
    {
        const char *term;
        std::vector<std::string> found;
    } cases[] = {
        {"fire", {"Fire station"}}, // not the hut: a name has the word
        {"ski berg", {"Berghaus"}},
        {"grindelw fondue", {"Berghaus"}},
        {"montagna", {"Berghaus"}},
        {"zuirch airprot", {"Zürich Airport"}},
        {"zurihc", {"Zürich See", "Zürich Airport"}},
        {"gridnelwlad", {"Berghaus"}},
        {"zurich terminal airport", {"Zürich Airport"}},
        {"lodz", {"Łódź"}},
        {"glueck", {"Glück auf"}},
        {"moskva", {"Москва"}},
        {"タワー", {"東京タワー"}},
        {"zurich1", {}},
        {"x", {}},
    };
    for (const auto &row : cases) {
        const QString term = QString::fromUtf8(row.term);
        EXPECT_EQ(names(manager.findPlaces(term, &error)), row.found) << row.term;
        EXPECT_EQ(count(SearchRule::createNameRule(SearchOperator::Contains, term)), row.found.size()) << row.term;
    }
    const QString slip = QStringLiteral("zurihc");
    EXPECT_EQ(names(manager.findPlaces(slip, &error, nullptr, {}, 1)), std::vector<std::string>{"Zürich Airport"});
    EXPECT_THAT(names(manager.findPlaces(slip, &error, nullptr, {}, 2)), IsEmpty()) << "behind the last page";

    ASSERT_EQ(manager.fav(get(add("Geneva Airport")).get()), Error::Success);
    const auto favourites = [](const char *term) {
        return InternalPlaceManager().findPlacesSizeByGroup(SearchResultGroup::Favorites, nullptr,
                                                            QString::fromLatin1(term));
    };
    EXPECT_EQ(favourites("genvea airprot"), 1U);
    EXPECT_EQ(favourites("zuirch airprot"), 0U) << "that airport is known, and no favourite";

    const std::unique_ptr<Place> renamed = get(hut);
    renamed->setDescription(QStringLiteral("closed"));
    ASSERT_EQ(manager.updatePlace(renamed.get()), Error::Success);
    EXPECT_THAT(names(manager.findPlaces(QStringLiteral("fondue"))), IsEmpty());
    ASSERT_EQ(manager.removePlace(hut), Error::Success);
    EXPECT_THAT(names(manager.findPlaces(QStringLiteral("gridnelwlad"))), IsEmpty()) << "known, but of no place";
}

TEST_F(RoadTest, ResultsComeInTheOrderAskedForAndPagesFitTogether)
{
    for (const char *name : {"delta", "Alpha", "charlie", "Bravo", "alpha"})
        add(name, [name](Place &place) {
            Location location;
            location.setCoordinates(Coordinates(name[0] == 'd' ? 10 : 20, 0));
            place.replaceLocation(0, location);
        });
    for (const qint64 id : {3, 3, 1})
        ASSERT_EQ(manager.usePlace(id), Error::Success);
    const auto sorted = [&](const SortRule &sort) {
        return names(manager.findPlaces(QString(), &error, nullptr, sort));
    };
    EXPECT_THAT(sorted(SortRule()), ElementsAre("charlie", "delta", "alpha", "Bravo", "Alpha"));
    EXPECT_THAT(sorted(SortRule::createSimpleSortRule(SortField::Name, SortOrder::Ascending)),
                ElementsAre("Alpha", "alpha", "Bravo", "charlie", "delta"));
    EXPECT_THAT(sorted(SortRule::createDistanceSortRule(Coordinates(11, 0), SortOrder::Ascending)),
                ElementsAre("delta", "Alpha", "charlie", "Bravo", "alpha"));

    SearchHandle handle;
    std::vector<std::string> all = names(manager.findPlaces(QString(), &error, &handle, SortRule(), 0, 2));
    while (handle.hasMoreData()) {
        const auto page = names(internal.findMorePlaces(handle, 2, error, -1));
        ASSERT_FALSE(page.empty());
        all.insert(all.end(), page.begin(), page.end());
    }
    EXPECT_THAT(all, ElementsAre("charlie", "delta", "alpha", "Bravo", "Alpha"));
    EXPECT_THAT(names(internal.findMorePlaces(handle, 2, error, 1)), ElementsAre("delta", "alpha"));
    EXPECT_THAT(names(manager.findPlaces(QString(), &error, nullptr, SortRule(), 0, 100000)), IsEmpty());
    EXPECT_EQ(error, Error::LimitExceeded);
}

TEST_F(RoadTest, FavouritesTagsUsesAndOwnersAreKept)
{
    qputenv("PLACE_CARD_INVOKER_DNAME", "app.one");
    const qint64 first = add("First");
    qputenv("PLACE_CARD_INVOKER_DNAME", "app.two");
    const qint64 second = add("Second");
    EXPECT_THAT(names(manager.findMyPlaces()), ElementsAre("Second"));
    EXPECT_THAT(names(manager.findPlacesByOwners({QStringLiteral("app.one"), QStringLiteral("app.none")})),
                ElementsAre("First"));
    qunsetenv("PLACE_CARD_INVOKER_DNAME");

    EXPECT_EQ(manager.addTag(first, QStringLiteral("beach")), Error::Success);
    EXPECT_EQ(manager.addTag(first, Tags::MyHome), Error::Success);
    EXPECT_THAT(manager.getTagsInUse(), ElementsAre(QStringLiteral("beach"), Tags::MyHome));
    EXPECT_THAT(get(first)->aliases(), ElementsAre(QStringLiteral("Home")));
    EXPECT_THAT(names(manager.findPlacesByTags({QStringLiteral("beach")})), ElementsAre("First"));
    EXPECT_EQ(manager.removeTag(first, QStringLiteral("beach")), Error::Success);
    EXPECT_THAT(names(manager.findPlacesByTags({QStringLiteral("beach")})), IsEmpty());

    QList<PlaceHeader *> found = manager.findPlaces(QStringLiteral("second"));
    ASSERT_EQ(found.size(), 1);
    EXPECT_EQ(manager.fav(found[0]), Error::Success);
    EXPECT_TRUE(get(second)->isFavorite());
    EXPECT_EQ(manager.unfav(found[0]), Error::Success);
    EXPECT_FALSE(get(second)->isFavorite());
    qDeleteAll(found);

    const qint64 repeated = add("Repeated", [](Place &place) {
        dataOf(place).m_tags = QStringList{Tags::Favorite, Tags::MyHome, Tags::Favorite, Tags::MyHome};
        dataOf(place).m_aliases = QStringList{QStringLiteral("Home"), QStringLiteral("Home")};
    });
    for (const QString &tag : {QString(Tags::Favorite), QString(Tags::MyHome)})
        EXPECT_EQ(manager.removeTag(repeated, tag), Error::Success);
    EXPECT_FALSE(get(repeated)->hasTag()) << "each of a tag goes";
    EXPECT_THAT(get(repeated)->aliases(), IsEmpty());
}

TEST_F(RoadTest, TheRecentBucketIsEmptiedWithoutLosingWhatWasSaved)
{
    add("Saved");
    Place picked;
    sample::fill(picked, -1);
    picked.removeTag(Tags::Favorite);
    ASSERT_EQ(manager.addRecentlyPickedPlace(&picked), Error::Success);
    EXPECT_EQ(count(SearchRule::createRecentlyPickedRule()), 2U);
    EXPECT_EQ(manager.clearRecentlyPickedPlaces(), Error::Success);
    EXPECT_EQ(count(SearchRule::createRecentlyPickedRule()), 0U);
    EXPECT_THAT(names(manager.findPlaces(QString())), ElementsAre("Saved"));
}

TEST_F(RoadTest, TheTermThatAPlaceWasFoundByBecomesRecentWhenThePlaceIsFetchedOrUsed)
{
    const qint64 id = add("Zürich 駅?", [](Place &place) { place.addTag(QStringLiteral("t")); });
    const auto fetch = [&](PlaceHeader &header) { EXPECT_TRUE(std::unique_ptr<Place>(manager.getPlace(&header))); };
    const auto use = [&](PlaceHeader &header) { EXPECT_EQ(manager.usePlace(&header), Error::Success); };
    const struct
    {
        QString term;
        std::function<void(PlaceHeader &)> work;
        bool isKept;
    } rows[] = {
        {QStringLiteral("zur"), fetch, true},
        {QString::fromUtf8("zürich"), use, true},
        {QString::fromUtf8("駅"), use, true},
        {QString::fromUtf8("zurich 駅"), fetch, false}, // A fetch carries ISO 8859-1.
        {QStringLiteral("zuri"), [](PlaceHeader &) {}, false},
        {QString(), fetch, false},
    };
    QStringList kept;
    for (const auto &row : rows) {
        const QList<PlaceHeader *> found = manager.findPlaces(row.term, &error);
        ASSERT_EQ(found.size(), 1) << row.term.toStdString();
        row.work(*found.first());
        EXPECT_EQ(found.first()->id(), id);
        qDeleteAll(found);
        if (row.isKept)
            kept.prepend(row.term);
        EXPECT_EQ(InternalPlaceManager().getRecentSearchTerms(&error), kept) << row.term.toStdString();
    }
}
