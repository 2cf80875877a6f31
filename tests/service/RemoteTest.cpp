// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "manager/PlaceManagerPrivate.h"
#include "model/InternalTags.h"
#include "model/PlaceHeaderPrivate.h"
#include "places/AuxiliaryDataReply.h"
#include "places/AuxiliaryDataRequest.h"
#include "places/PlaceHeader.h"
#include "places/PlaceManager.h"
#include "protocol/Protocol.h"
#include "support/Placesd.h"
#include "support/SamplePlace.h"

#include <gmock/gmock.h>

#include <QtCore/QFile>

using namespace vela::platform::places;
using testing::ElementsAre;
using testing::IsEmpty;
using Group = SearchResultGroup::Type;
using Names = std::vector<std::string>;

namespace
{

/// What providers give, on its way to an application.
class RemoteTest : public testing::Test
{
protected:
    explicit RemoteTest(const QStringList &arguments = {}, const char *program = "placesd")
        : service(arguments, program)
    {}

    template <typename List>
    static Names names(const List &places)
    {
        Names names;
        for (const auto &place : places)
            names.push_back(place->name().toStdString());
        return names;
    }
    QList<QSharedPointer<AbstractPlace>> group(Group group, const char *term, int limit = 9,
                                               const Coordinates &centre = Coordinates())
    {
        return internal.findPlacesByGroup(group, &error, &handle, QString::fromUtf8(term), 0, limit, centre, false);
    }
    Placesd service;
    PlaceManager manager;
    PlaceManagerPrivate internal;
    Protocol protocol;
    SearchHandle handle;
    Error::Type error = Error::Unspecified;
};

class GazetteerTest : public RemoteTest
{
protected:
    GazetteerTest()
        : RemoteTest({QStringLiteral("--gazetteer"), QStringLiteral(SOURCES "/examples/data/cities.geojson"),
                      QStringLiteral(SOURCES "/examples/data/airports.geojson")})
    {
        // Under a sanitizer, on a busy machine, the index may take longer than a request waits for it.
        for (int tries = 0; tries < 4 && names(group(Group::RemoteByName, "zürich", 1)).empty(); ++tries) {
        }
    }
};

class GuideTest : public RemoteTest
{
protected:
    GuideTest()
        : RemoteTest({}, "placesd_with_guide")
    {}
};

} // namespace

TEST_F(GazetteerTest, EveryRemoteGroupGivesWhatItIsNamedFor)
{
    const Coordinates zurich(47.37, 8.54);
    EXPECT_EQ(names(group(Group::RemoteByName, "zürich", 1)), Names{"Zürich"});
    EXPECT_EQ(names(group(Group::PointsOfInterest, "zur airp", 1)), Names{"Zürich Airport"});
    EXPECT_EQ(names(group(Group::Addresses, "zurich switzerland", 1)), Names{"Zürich"});
    EXPECT_EQ(names(group(Group::Categories, "large airport", 1, zurich)), Names{"Zürich Airport"});
    EXPECT_THAT(names(group(Group::CategorySuggestions, "air")), ElementsAre("large airport", "medium airport"));
    EXPECT_EQ(group(Group::RemoteByName, "london", 1, Coordinates(43, -81))[0]->primaryAddress().country(),
              QStringLiteral("Canada"))
        << "where the user is, the nearest of several comes first";
    const auto all = static_cast<unsigned>(group(Group::RemoteByName, "san", 1000).size());
    EXPECT_EQ(internal.findPlacesSizeByGroup(Group::RemoteByName, &error, QStringLiteral("san"), Coordinates()), all);
    EXPECT_THAT(manager.findPlaces(QStringLiteral("zürich")), IsEmpty()) << "nothing of it is stored";
}

TEST_F(GazetteerTest, ASuggestionLeadsToItsPlace)
{
    const auto suggestions = group(Group::Suggestions, "zur");
    ASSERT_FALSE(suggestions.isEmpty());
    const auto &header = dynamic_cast<const PlaceHeader &>(*suggestions[0]);
    const std::unique_ptr<Place> place(internal.getPlace(suggestions[0].data(), &error));
    ASSERT_TRUE(place);
    EXPECT_EQ(place->name(), header.name());
    EXPECT_FALSE(place->hasTag(QLatin1String(InternalTags::Suggestion))) << "what it leads to is a place";

    Place *found = nullptr;
    const Coordinates zurich(47.37, 8.54);
    const auto categories = group(Group::CategorySuggestions, "large");
    const auto &category = dynamic_cast<const PlaceHeader &>(*categories[0]);
    const std::string id = PlaceHeaderPrivate::privateFromPublic(&category)->externalId().toStdString();
    ASSERT_EQ(protocol.getPlaceFromSuggestion(id, zurich, found), Error::Success);
    EXPECT_EQ(std::unique_ptr<Place>(found)->name(), QString::fromUtf8("Zürich Airport")) << "the nearest one";
    EXPECT_EQ(protocol.getPlaceFromSuggestion("no such name anywhere", zurich, found), Error::NotFound);
}

TEST_F(GazetteerTest, ItsDetailsAreAuxiliaryData)
{
    const auto found = group(Group::PointsOfInterest, "zurich airport", 1);
    AuxiliaryDataRequest request;
    request.setPlace(found[0]);
    request.setDataType(AuxiliaryData::TypePointOfInterest);
    request.setRemoteDataOnly(true);
    AuxiliaryDataReply reply;
    ASSERT_EQ(internal.getAuxiliaryData(request, reply), Error::Success);
    ASSERT_EQ(reply.data().size(), 1);
    EXPECT_EQ(reply.data()[0].property(QStringLiteral("iata")), QStringLiteral("ZRH"));
    EXPECT_EQ(reply.data()[0].provider().name(), QStringLiteral("gazetteer"));
    QList<Provider> providers;
    EXPECT_EQ(protocol.getSupportedProviders(providers), Error::Success);
    ASSERT_EQ(providers.size(), 1);
    EXPECT_THAT(providers[0].supportedDataTypes(), ElementsAre(AuxiliaryData::TypePointOfInterest));
}

TEST(Gazetteer, TakesWhatAFileHasAndReadsItAgainWhenItChanges)
{
    QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("places.geojson"));
    const auto write = [&file](const QByteArray &text) {
        QFile out(file);
        ASSERT_TRUE(out.open(QIODevice::WriteOnly));
        out.write(text);
    };
    const QByteArray feature = R"({"type":"Feature","geometry":{"type":"Point","coordinates":[7,46]},)"
                               R"("properties":{"name":"Café %1","kind":"café"}})";
    const auto named = [&feature](const char *name) { return QByteArray(feature).replace("%1", name); };
    PlaceManagerPrivate internal;
    Error::Type error = Error::Unspecified;
    const auto found = [&] {
        Names names;
        for (const auto &place :
             internal.findPlacesByGroup(Group::Remote, &error, nullptr, QStringLiteral("cafe"), 0, 9, {}, false))
            names.push_back(place->name().toStdString());
        return names;
    };

    write(R"({"type":"FeatureCollection","features":[)" + named("One") + R"(,{"type":"Feature"},)" + named("Two")
          + R"(,{"type":"Fea)");
    Placesd service({QStringLiteral("--gazetteer"), file});
    EXPECT_EQ(found(), (Names{"Café One", "Café Two"})) << "what stands before the cut";
    service.kill();
    write(R"({"type":"FeatureCollection","features":[)" + named("Three") + "]}");
    service.start();
    EXPECT_EQ(found(), Names{"Café Three"});
    service.kill();
    QFile(service.path("places.db-gazetteer")).resize(5000);
    service.start();
    EXPECT_EQ(error == Error::Success ? found() : Names(), Names{"Café Three"}) << "a damaged index is made anew";
}

TEST_F(GuideTest, AFailingProviderTakesNothingFromTheOthers)
{
    for (const char *name : {"fail here", "throw here", "stuck here"}) {
        Place place;
        sample::fill(place, -1);
        place.setName(QLatin1String(name));
        ASSERT_EQ(manager.addPlace(&place), Error::Success);
    }
    const Coordinates centre(46, 7);
    for (const char *term : {"fail", "throw", "stuck"}) {
        EXPECT_THAT(group(Group::RemoteByName, term), IsEmpty());
        EXPECT_EQ(error, QLatin1String(term) == QLatin1String("stuck") ? Error::TimedOut : Error::ProviderFailed)
            << term;
        const auto merged = manager.findPlaces(QLatin1String(term), &error, nullptr, SortRule(), 0, 9, true, centre);
        EXPECT_EQ(names(merged).size(), 1U) << term;
        EXPECT_EQ(error, Error::Success) << term;
        qDeleteAll(merged);
    }
}
