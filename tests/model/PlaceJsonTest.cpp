// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "places/PlaceJson.h"

#include "model/PlaceHeaderPrivate.h"
#include "model/PlacePrivate.h"
#include "places/Tags.h"
#include "protocol/PPSDecoder.h"
#include "support/FakeSystem.h"
#include "support/SamplePlace.h"

#include <gmock/gmock.h>

#include <cmath>

using namespace vela::platform::places;
using testing::ElementsAre;
using testing::HasSubstr;

namespace
{

const char COMMON[] = R"("id":42,"name":"Café","description":"by the lake","owner":"app","restricted":true,)"
                      R"("certainty":2,"perimeter":2,"lastUsedTime":4000,)";
const char LOCATION[] =
    R"("location":{"id":42,"address":{"label":"Café au lac","room":"2b","floor":-1,)"
    R"("building":"B","campus":"C","houseNumber":"1","street":"Quai 1","city":"Genève","region":"GE",)"
    R"("country":"Suisse","postalCode":"1201","alpha2CountryCode":"CH","alpha3CountryCode":"CHE",)"
    R"("extendedAddressLines":"E","compactAddressLines":"Quai 1\nGenève"},)"
    R"("coordinates":{"latitude":46.2,"longitude":6.15,"horizontalAccuracy":12.5}})";

std::string written(const AbstractPlace &place)
{
    return PlaceJson::write(place).toStdString();
}

/// The full place of these members; null when it is none.
std::unique_ptr<Place> placeWith(const std::string &members)
{
    return PlaceJson::readPlace(QByteArray::fromStdString("{\"complete\":true," + members + "}"));
}

QString nameIn(const std::string &json)
{
    const std::unique_ptr<Place> place = placeWith("\"name\":\"" + json + "\"");
    return place ? place->name() : QStringLiteral("(refused)");
}

/// What a place or header makes of a document, whatever its kind.
template <typename PlaceData>
void readInto(PlaceData &place, std::string json)
{
    PPSDecoder decoder;
    ASSERT_TRUE(decoder.init());
    ASSERT_EQ(pps_decoder_parse_json_str(&decoder, json.data()), PPS_OK);
    const PPSDecoder::PushResourceManager object(decoder, nullptr);
    EXPECT_TRUE(place.fromJSON(*&decoder, 0));
}

/// Every record of a place, as "type:key=value,".
QStringList recordsOf(const Place &place)
{
    QStringList records;
    for (int i = 0; i < place.auxiliaryDataCount(); ++i) {
        const AuxiliaryData record = place.auxiliaryData(i);
        QString text = record.type() + QLatin1Char(':');
        const QMap<QString, QString> properties = record.properties();
        for (auto property = properties.begin(); property != properties.end(); ++property)
            text += property.key() + QLatin1Char('=') + property.value() + QLatin1Char(',');
        records += text;
    }
    return records;
}

} // namespace

TEST(PlaceJson, HasTheMembersOfAFullPlaceInTheirOrder)
{
    sample::FullPlace place;
    place.addLocation(Location(8));
    EXPECT_EQ(written(place), std::string("{") + COMMON
                                  + R"("complete":true,"usageCount":3,"expiryTime":3000,"creationTime":1000,)"
                                    R"("updateTime":2000,"tags":["lbs-favorite"],)"
                                  + LOCATION
                                  + R"(,"contents":[{"id":9,"type":"poi","externalId":"x:1","persistable":true,)"
                                    R"("data":{"emailAddress":"a@b.example","phoneNumber":"+41 22"}}]})");
    EXPECT_EQ(written(Place()),
              R"({"id":-1,"restricted":false,"certainty":0,"perimeter":0,"lastUsedTime":0,"complete":true,)"
              R"("usageCount":0,"expiryTime":0,"creationTime":0,"updateTime":0,"contents":[]})");
}

TEST(PlaceJson, HasTheMembersOfAHeaderInTheirOrder)
{
    sample::FullPlace place;
    PlaceHeader header;
    PlaceHeaderPrivate::privateFromPublic(&header)->setData(place.data());
    PlaceHeaderPrivate::privateFromPublic(&header)->m_primaryUrl = QUrl(QStringLiteral("https://a.example/é?q=%26"));
    EXPECT_EQ(written(header), std::string("{") + COMMON
                                   + R"("__externalId":"x:1","__auxDataType":"poi","__dataMask":6437,)"
                                     R"("complete":false,"primaryEmailAddress":"a@b.example",)"
                                     R"("primaryPhoneNumber":"+41 22","primaryUrl":"https://a.example/é?q=%26",)"
                                   + LOCATION + "}");
    EXPECT_THAT(written(PlaceHeader()), HasSubstr(R"("location":{"id":-1,"address":{},"coordinates":{}})"));

    const auto read = PlaceJson::read(PlaceJson::write(header));
    ASSERT_TRUE(qobject_cast<PlaceHeader *>(read.get()));
    EXPECT_EQ(written(*read), written(header));
    EXPECT_EQ(read->primaryUrl(), header.primaryUrl());
}

TEST(PlaceJson, ReadsBackAsThePlaceItWasMadeOf)
{
    sample::FullPlace place;
    place.addTag(Tags::MyHome);
    PlacePrivate &data = place.data();
    Coordinates point(61.108574560936972, -97.35220071018621);
    point.setVerticalAccuracy(0.1F);
    data.m_locations[0].setCoordinates(point);
    data.setLastUsedTime(~quint64(0));
    AuxiliaryDataPrivate::fromPublic(data.auxiliaryData(0))->setPersistable(false);

    const auto read = PlaceJson::readPlace(PlaceJson::write(place));
    ASSERT_TRUE(read);
    EXPECT_EQ(written(*read), written(place));
    EXPECT_EQ(read->location(0).address(), place.location(0).address());
    EXPECT_EQ(read->location(0).id(), 42) << "the place's own";
    const Coordinates readPoint = read->location(0).coordinates();
    EXPECT_EQ(readPoint.latitude(), point.latitude());
    EXPECT_EQ(readPoint.verticalAccuracy(), point.verticalAccuracy());
    EXPECT_TRUE(std::isnan(readPoint.altitude()));
    EXPECT_EQ(read->lastUsedTime(), ~quint64(0));
    EXPECT_FALSE(read->auxiliaryData(0).isPersistable());
    EXPECT_THAT(read->aliases(), ElementsAre(QStringLiteral("Home"))) << "an alias comes back with its tag only";
}

TEST(PlaceJson, HoldsWhatEightBitsCanHoldHoweverItIsSpelled)
{
    Place place;
    place.setName(QStringLiteral("Zü\"\\\n€ж") + QChar(QChar::Null) + QStringLiteral("😀."));
    EXPECT_THAT(written(place), HasSubstr(R"("name":"Zü\"\\\n?????.")"));

    EXPECT_EQ(nameIn("Zürich"), QStringLiteral("Zürich"));
    EXPECT_EQ(nameIn(R"(Z\u00FCr\u0069ch)"), QStringLiteral("Zürich"));
    EXPECT_EQ(nameIn(R"(€\u20ac😀\ud83d\ude00\ud800\u0000.)"), QStringLiteral("????????."));
    EXPECT_EQ(nameIn(R"(\\u00fc\u0022\u005c\/)"), QStringLiteral("\\u00fc\"\\/"));
    for (const char *bad : {R"(\u00f)", R"(\u0xff)", R"(\u)", "\\", "\xFC", "\xC0\x80", "\xED\xA0\x80", "a\nb"})
        EXPECT_EQ(nameIn(bad), QStringLiteral("(refused)")) << bad;
}

TEST(PlaceJson, KeepsAllOfUnicodeWhenAsked)
{
    constexpr PlaceJson::Texts UNICODE = PlaceJson::Texts::Unicode;
    const QString text = QStringLiteral("\uFEFFZü\"\\\n€ж😀\uFFFF.");
    Place place;
    place.setName(text + QChar(QChar::Null) + QChar(0xD83D) + QStringLiteral("."));
    place.addTag(text);
    AuxiliaryData record(QStringLiteral("own"));
    record.addProperty(text, text);
    place.addAuxiliaryData(record);
    const QByteArray document = PlaceJson::write(place, UNICODE);
    const auto read = PlaceJson::readPlace(document, UNICODE);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->name(), text + QStringLiteral("??."));
    EXPECT_EQ(read->tag(0), text);
    EXPECT_EQ(read->auxiliaryData(0).property(text), text);
    EXPECT_EQ(PlaceJson::write(*read, UNICODE), document);
    EXPECT_EQ(written(*PlaceJson::readPlace(document)), written(place)) << "either form reads the other";
    const auto spelled = PlaceJson::read(R"({"complete":true,"name":"\u20ac\ud83d\ude00\ud800\u0000."})", UNICODE);
    EXPECT_EQ(spelled->name(), QStringLiteral("€😀??."));
}

TEST(PlaceJson, IsRefusedWholeAndWithAReason)
{
    const std::string deep = std::string(1000, '[') + std::string(1000, ']');
    const struct
    {
        std::string document;
        const char *reason;
    } cases[] = {
        {"", "not JSON"},
        {"{\"complete\":true", "not JSON"},
        {"{\"complete\":true} x", "not JSON"},
        {"{\"complete\":true,\"tags\":" + deep + "}", "nested too deep"},
        {"{\"complete\":true,\"location\":{\"coordinates\":{\"latitude\":1e400}}}", "too large"},
        {std::string("{\"complete\":true}\0", 18), "null character"},
        {"{\"complete\":true,\"name\":\"Z\xFCrich\"}", "not UTF-8"},
        {"{\"complete\":true,\"name\":\"\xE2\x82", "not UTF-8"},
        {"[{\"complete\":true}]", "not a JSON object"},
        {"true", "not a JSON object"},
        {"{}", "\"complete\""},
        {"{\"complete\":1}", "\"complete\""},
        {"{\"complete\":false}", "header"},
    };
    for (const auto &row : cases) {
        Error::Type error = Error::Success;
        QString reason;
        EXPECT_FALSE(PlaceJson::readPlace(QByteArray::fromStdString(row.document), &error, &reason)) << row.document;
        EXPECT_EQ(error, Error::InvalidArgument) << row.document;
        EXPECT_THAT(reason.toStdString(), HasSubstr(row.reason)) << row.document;
    }
    Error::Type error = Error::Unspecified;
    QString reason = QStringLiteral("left over");
    EXPECT_TRUE(PlaceJson::read("\xEF\xBB\xBF {\"complete\":false}\n", &error, &reason));
    EXPECT_EQ(error, Error::Success);
    EXPECT_TRUE(reason.isEmpty());
}

TEST(PlaceJson, LeavesAloneWhatItHasInAnotherTypeOrOutOfRange)
{
    const auto plain = placeWith(R"("id":"7","name":7,"restricted":"yes","certainty":5000000000,"perimeter":null,)"
                                 R"("lastUsedTime":1.5,"usageCount":-2147483649,"tags":{"a":"b"},"location":[],)"
                                 R"("contents":{"type":"poi"})");
    ASSERT_TRUE(plain);
    EXPECT_EQ(written(*plain), written(Place()));

    const auto placed = placeWith(R"("location":{"address":{"floor":9999999999,"city":[],"street":"S"},)"
                                  R"("coordinates":{"latitude":"1","longitude":2,"horizontalAccuracy":1e300}})");
    ASSERT_TRUE(placed);
    EXPECT_THAT(written(*placed), HasSubstr(R"({"id":-1,"address":{"street":"S"},"coordinates":{"longitude":2.0}})"));
    EXPECT_EQ(placed->location(0).address().floor(), std::numeric_limits<int>::min());

    const auto twice = placeWith(R"("complete":false,"name":"a","name":"b","tags":["x",5,"x","lbs-my-work","y"],)"
                                 R"("contents":[{"type":"t","type":"u","data":{"k":"1","k":"2"}}])");
    ASSERT_TRUE(twice);
    EXPECT_EQ(twice->name(), QStringLiteral("a"));
    EXPECT_THAT(PlacePrivate::privateFromPublic(twice.get())->tags(),
                ElementsAre(QStringLiteral("x"), QStringLiteral("lbs-my-work"), QStringLiteral("y")));
    EXPECT_EQ(recordsOf(*twice), QStringList{QStringLiteral("t:k=2,")});
}

TEST(PlaceJson, KeepsRecordsOfEveryTypeAndPassesOverThoseWithout)
{
    const FakeSystem system;
    const auto place =
        placeWith(R"("contents":[{"type":"contact","data":{";fax;":"1","n":2,"o":{}}},5,)"
                  R"({"id":3,"data":{"lost":"x"}},{"type":"poi","data":[1]},{"type":""},[{"type":"poi"}],)"
                  R"({"type":"lbs-review","id":8},{"type":"lbs-image","externalId":"e"},)"
                  R"({"type":"lbs-reservation"},{"type":"calendar","data":{"":"c"}},{"type":"own"}])");
    ASSERT_TRUE(place);
    const QString kept =
        QStringLiteral("contact:;fax;=1, poi: : lbs-review: lbs-image: lbs-reservation: calendar:=c, own:");
    EXPECT_EQ(recordsOf(*place).join(QLatin1Char(' ')), kept);
    EXPECT_EQ(place->auxiliaryData(0).id(), -1);
    EXPECT_EQ(place->auxiliaryData(3).id(), 8);
    EXPECT_EQ(place->auxiliaryData(4).externalId(), QStringLiteral("e"));
    EXPECT_TRUE(place->auxiliaryData(4).isPersistable());
    EXPECT_EQ(FakeSystem::messages.size(), 3U);
    EXPECT_EQ(PlaceJson::readPlace(PlaceJson::write(*place))->auxiliaryDataCount(), place->auxiliaryDataCount());
}

TEST(PlaceDocument, TakesFromAForeignDocumentWhatItKnowsAndForgetsWhatItWas)
{
    sample::FullPlace place;
    PlacePrivate &data = place.data();
    readInto(data, R"({"name":"H","complete":false,"primaryUrl":"u","location":{"id":5,"address":{"city":"C"}}})");
    EXPECT_EQ(data.name(), QStringLiteral("H"));
    EXPECT_EQ(data.locations().size(), 1);
    EXPECT_FALSE(data.hasTag() || data.hasAuxiliaryData());
    for (const char *json : {"[]", "7", "[{\"name\":\"H\"}]"}) {
        readInto(data, json);
        EXPECT_EQ(data, PlacePrivate()) << json;
    }
    PlaceHeaderPrivate header;
    header.m_location.setZoom(7);
    readInto(header, R"({"location":{"id":5}})");
    EXPECT_EQ(header.m_location.zoom(), -1);
    EXPECT_EQ(header.m_location.id(), 5);
}
