// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "formats/GeoJsonWriter.h"
#include "formats/Input.h"
#include "formats/VCardReader.h"
#include "formats/VCardWriter.h"

#include <places/AuxiliaryData.h>
#include <places/Place.h>
#include <places/PointOfInterestAuxiliaryData.h>
#include <places/Tags.h>

#include <gmock/gmock.h>

#include <QtCore/QTemporaryFile>

// vCards of other programs and of this one.

namespace
{

using namespace vela::platform::places;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

struct ReadFile
{
    std::vector<formats::ReadPlace> members;
    QString problem;
};

ReadFile readFile(const QByteArray &bytes)
{
    QTemporaryFile file;
    EXPECT_TRUE(file.open() && file.write(bytes) == bytes.size() && file.flush());
    formats::Input input(file.fileName());
    ReadFile read;
    read.problem = formats::readVCards(input, {}, [&read](formats::ReadPlace member) {
        read.members.push_back(std::move(member));
        return true;
    });
    return read;
}

QByteArray card(const QByteArray &lines, const char *version = "4.0")
{
    return QByteArray("BEGIN:VCARD\r\nVERSION:") + version + "\r\n" + lines + "END:VCARD\r\n";
}

QString parts(const QStringList &texts)
{
    return texts.join(QLatin1Char('|'));
}

QStringList tagsOf(const Place &place)
{
    QStringList tags;
    for (int i = 0; i < place.tagCount(); ++i)
        tags.append(place.tag(i));
    return tags;
}

/// The members that map to card properties, as one text; the reason for a member that is not a place.
std::string summary(const formats::ReadPlace &read)
{
    if (!read.place)
        return "problem: " + read.problem.toStdString();
    const Place &place = *read.place;
    const Address address = place.primaryAddress();
    const Coordinates at = place.primaryCoordinates();
    const QString position =
        at.isValid() ? QStringLiteral("%1 %2").arg(at.latitude(), 0, 'g', 10).arg(at.longitude(), 0, 'g', 10)
                     : QString();
    return parts({read.id, place.name(), position, address.label(), address.room(), address.street(), address.city(),
                  address.region(), address.postalCode(), address.country(), parts(tagsOf(place)),
                  parts(place.aliases()), place.primaryPhoneNumber(), place.primaryEmailAddress(),
                  place.primaryUrl().toString(), place.description()})
        .replace(QLatin1Char('\n'), QLatin1Char('/'))
        .toStdString();
}

std::vector<std::string> summaries(const QByteArray &bytes)
{
    std::vector<std::string> all;
    for (const formats::ReadPlace &read : readFile(bytes).members)
        all.push_back(summary(read));
    return all;
}

QByteArray featureOf(const Place &place)
{
    return formats::toGeoJsonFeature(place);
}

/// A place that a plain card cannot represent.
std::unique_ptr<Place> fullPlace()
{
    auto place = std::make_unique<Place>();
    place->setName(QStringLiteral("Lake; \"house\", BEGIN:VCARD"));
    place->setDescription(QStringLiteral("one\ntwo\r\x01 END:VCARD \u05e9").repeated(40));
    place->addTag(QStringLiteral("a,b;c\\n"));
    place->addTag(Tags::Work);
    place->addAlias(QStringLiteral("Hut"));
    Address address;
    address.setLabel(QStringLiteral("Label^ \"x\"\nline"));
    address.setStreet(QStringLiteral("Street"));
    address.setHouseNumber(QStringLiteral("7"));
    address.setBuilding(QStringLiteral("B"));
    Location location;
    location.setAddress(address);
    location.setCoordinates(Coordinates(47.1234567890123, -8.1));
    place->addLocation(location);
    location.setCoordinates(Coordinates(1, 2));
    place->addLocation(location);
    AuxiliaryData record(QStringLiteral("own"));
    record.addProperty(QStringLiteral("key"), QStringLiteral("value \\ , ;\n").repeated(3000));
    place->addAuxiliaryData(record);
    return place;
}

} // namespace

TEST(VCardTest, EachAddressOfACardIsAPlace)
{
    const QByteArray anna =
        "UID:anna\r\nFN:Anna\\, M\\; "
        "B\r\nNICKNAME:Annie,A\\,M\r\nNOTE:from\\nschool\r\nCATEGORIES:a,b\\,c\r\nCATEGORIES:d\r\n"
        "TEL;TYPE=fax:1\r\nTEL;VALUE=uri:tel:+41-44\r\nEMAIL:a@b.example\r\nEMAIL;PREF=1:c@d.example\r\n"
        "URL:https://anna.example/?a=b,c\r\n";
    const struct
    {
        QByteArray lines;
        std::vector<std::string> places;
        const char *version = "4.0";
    } cases[] = {
        {anna
             + "ADR;TYPE=home;GEO=\"geo:47.1234567,-8.7654321;u=4\":;;Seestrasse 1\\, "
               "b;Z\xc3\xbcrich;ZH;8001;Schweiz\r\n"
               "ADR;TYPE=work;LABEL=\"Mr ^'X^'\\nRoad\":;12;Rue 2;Geneva;;;\r\nADR:;;;;;;\r\nGEO:geo:1,2\r\n",
         {"anna#1|Anna, M; B|47.1234567 -8.7654321|||Seestrasse 1, "
          "b|Z\xc3\xbcrich|ZH|8001|Schweiz|lbs-home|a|b,c|d|Annie|A,M|"
          "+41-44|c@d.example|https://anna.example/?a=b,c|from/school",
          "anna#2|Anna, M; B||Mr \"X\"/Road|12|Rue 2|Geneva||||lbs-work|a|b,c|d|Annie|A,M|"
          "+41-44|c@d.example|https://anna.example/?a=b,c|from/school"}},
        {"FN:One\r\nADR:;;Street;;;;\r\nGEO:geo:47.24,8.72\r\n", {"|One|47.24 8.72|||Street||||||||||"}},
        {"N:Last;First;;;\r\nGEO:47.24;8.72\r\n", {"|First Last|47.24 8.72|||||||||||||"}, "3.0"},
        {"ORG:Acme\r\nUID:u\r\nADR:PO 7;;;;;;\r\n", {"u|Acme||||PO 7||||||||||"}, "3.0"},
        {"FN;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:=C3=89t=C3=A9\r\nADR;HOME:;;S;;;;\r\n",
         {"|\xc3\x89t\xc3\xa9||||S|||||lbs-home|||||"},
         "2.1"},
        {"FN:Folded na\r\n me\r\nitem1.ADR:;;Str\r\n\teet;;;;\r\n", {"|Folded name||||Street||||||||||"}},
        {"FN:Nowhere\r\nTEL:1\r\n", {"problem: it has neither an address (ADR) nor a position (GEO)"}},
        {"FN:Far\r\nGEO:geo:95,8\r\n", {"problem: it has neither an address (ADR) nor a position (GEO)"}},
        {"ADR:;;Street;;;;\r\n", {"problem: it has no name (FN)"}},
        {"FN:\xff\r\nADR:;;Street;;;;\r\n", {"problem: it is not UTF-8"}},
        {"FN:Many\r\nCATEGORIES:" + QByteArray::number(1) +
             [] {
                 QByteArray list;
                 for (int i = 0; i < 1000; ++i)
                     list += ",t" + QByteArray::number(i);
                 return list;
             }()
             + "\r\nADR:;;Street;;;;\r\n",
         {"problem: a list of more than 1000 members"}},
    };
    for (const auto &row : cases)
        EXPECT_EQ(summaries(card(row.lines, row.version)), row.places) << row.lines.left(200).constData();
}

TEST(VCardTest, AnInvalidCardIsReportedAndTheNextOneRead)
{
    const QByteArray sound = card("FN:Sound\r\nGEO:geo:1,2\r\n");
    const ReadFile read =
        readFile("stray\r\nBEGIN:VCARD\r\nFN:Cut\r\nGEO:geo:1,2\r\nPHOTO:x\r\n" + sound + card("FN:No\r\n")
                 + card("FN:Long\r\nGEO:geo:1,2\r\nNOTE:" + QByteArray(20000, 'x') + "\r\n")
                 + card("FN:Deep\r\nGEO:geo:1,2\r\nX-VELA-PLACE:" + QByteArray(100000, '[') + "\r\n") + sound);
    std::vector<std::string> said;
    for (const formats::ReadPlace &member : read.members)
        said.push_back((member.where + QStringLiteral(": ") + member.problem + member.losses.join(QStringLiteral("; ")))
                           .toStdString());
    EXPECT_THAT(
        said,
        ElementsAre("card 1, line 2: it has no END:VCARD; the lines before the cut are read; its PHOTO cannot be kept",
                    "card 2, line 6: ", "card 3, line 11: it has neither an address (ADR) nor a position (GEO)",
                    "card 4, line 15: 1 lines are too long or too many for a card",
                    "card 5, line 21: its X-VELA-PLACE is not a feature of a place", "card 6, line 27: "));
    EXPECT_EQ(read.problem, QString());
    EXPECT_THAT(readFile("a,b\r\n").problem.toStdString(), HasSubstr("no BEGIN:VCARD"));
}

TEST(VCardTest, APlainPlaceIsAPlainCard)
{
    Place place;
    place.setName(QStringLiteral("Lake, house; \u05e9").repeated(8));
    place.addTag(Tags::Home);
    place.addTag(QStringLiteral("a,b"));
    place.setDescription(QStringLiteral("one\ntwo"));
    Address address;
    address.setRoom(QStringLiteral("3"));
    address.setStreet(QStringLiteral("See;strasse"));
    address.setCity(QStringLiteral("Z\u00fcrich"));
    Location location;
    location.setAddress(address);
    Coordinates position(47.24, -8.1234567890123);
    position.setAltitude(400);
    location.setCoordinates(position);
    place.addLocation(location);
    PointOfInterestAuxiliaryData poi;
    poi.setPhoneNumber(QStringLiteral("+41"));
    place.addAuxiliaryData(poi);
    const QByteArray written = formats::toVCard(place);
    EXPECT_THAT(
        written.toStdString(),
        HasSubstr("NOTE:one\\ntwo\r\nTEL:+41\r\nCATEGORIES:a\\,b\r\nADR;TYPE=home:;3;See\\;strasse;Z\xc3\xbcrich;;;\r\n"
                  "GEO:geo:47.24,-8.1234567890123,400\r\nEND:VCARD\r\n"));
    for (const QByteArray &line : written.split('\n')) {
        QString decoded;
        EXPECT_LE(line.size(), 76) << "75 bytes and a carriage return";
        EXPECT_TRUE(formats::decodeUtf8(line, decoded)) << line.constData();
    }
    const ReadFile read = readFile(written + written);
    ASSERT_EQ(read.members.size(), 2U);
    EXPECT_EQ(featureOf(*read.members[1].place), featureOf(place));
}

TEST(VCardTest, EveryPlaceIsRestoredWithTheChangesOfOtherPrograms)
{
    const std::unique_ptr<Place> place = fullPlace();
    QByteArray written = formats::toVCard(*place);
    ReadFile read = readFile(written + written);
    ASSERT_EQ(read.members.size(), 2U);
    EXPECT_EQ(featureOf(*read.members[1].place), featureOf(*place));

    // Another program adds an id, a telephone number and a second address, changes the first address, and does not move
    // the place.
    written.replace("VERSION:4.0\r\n", "VERSION:4.0\r\nUID:book\r\n");
    const auto address = written.indexOf("\r\nADR;") + 2;
    written.replace(address, written.indexOf("GEO:") - address,
                    "TEL:+1\r\nBDAY:19700101\r\nADR;TYPE=work:;;Street 8;;;;\r\nADR:;;Second;;;;\r\n");
    read = readFile(written);
    ASSERT_EQ(read.members.size(), 2U);
    const Place &changed = *read.members[0].place;
    EXPECT_EQ(changed.name(), place->name());
    EXPECT_EQ(changed.location(0).address().street(), QStringLiteral("Street 8"));
    EXPECT_EQ(changed.location(0).coordinates().latitude(), place->location(0).coordinates().latitude());
    EXPECT_EQ(changed.location(1), place->location(1));
    EXPECT_EQ(changed.primaryPhoneNumber(), QStringLiteral("+1"));
    EXPECT_EQ(changed.auxiliaryData(0), place->auxiliaryData(0));
    EXPECT_EQ(read.members[1].place->primaryAddress().street(), QStringLiteral("Second"));
    EXPECT_EQ(read.members[0].id + read.members[1].id, QStringLiteral("bookbook#2"));
    EXPECT_THAT(featureOf(changed).toStdString(), HasSubstr(R"("id":"book")"));
    EXPECT_THAT(formats::toVCard(changed).toStdString(), HasSubstr("BDAY:19700101\r\n"))
        << "a line that maps to no member";
}

TEST(VCardTest, ARecordCannotInjectLinesIntoACard)
{
    const std::unique_ptr<Place> place = fullPlace();
    AuxiliaryData record(QStringLiteral("geojson.properties"));
    record.addProperty(
        QStringLiteral("vcard"),
        QStringLiteral(R"(["END:VCARD","fn:Evil","item.FN;X=\":\":Evil","ROLE:x\nFN:Evil","ROLE:Chief",7,"none"])"));
    place->addAuxiliaryData(record);
    const std::string written = formats::toPlainVCard(*place).toStdString();
    EXPECT_THAT(written, HasSubstr("ROLE:Chief\r\n"));
    EXPECT_THAT(written, Not(HasSubstr("Evil")));
    EXPECT_EQ(written.find("END:VCARD"), written.size() - 11);
}
