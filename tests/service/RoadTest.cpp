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
