// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "formats/VCardWriter.h"
#include "support/FormatFile.h"
#include "support/VCards.h"

#include <places/AuxiliaryData.h>
#include <places/Place.h>

#include <gmock/gmock.h>

// Places as cards. What the cards of other programs give is in data/readers.txt.

namespace
{

using namespace vela::platform::places;
using testing::HasSubstr;
using testing::Not;

/// A place that a plain card cannot represent.
std::unique_ptr<Place> fullPlace()
{
    const QByteArray texts = R"("name":"Lake; \"house\", BEGIN:VCARD","label":"Label^ \"x\"\nline","street":"Street",)"
                             R"("houseNumber":"7","building":"B","tags":["a,b;c\\n","lbs-work"],"aliases":["Hut"],)"
                             R"("otherLocations":[{"street":"Street","coordinates":[2,1]}],"description":")";
    const QByteArray record = R"("records":[{"type":"own","properties":{"key":")";
    return placeOf(R"({"type":"Feature","geometry":{"type":"Point","coordinates":[-8.1,47.1234567890123]},)"
                   R"("properties":{)"
                   + texts + QByteArray(R"(one\ntwo\r\u0001 END:VCARD \u05e9)").repeated(40) + "\"," + record
                   + QByteArray(R"(value \\ , ;\n)").repeated(3000) + R"("}}]}})");
}

} // namespace

TEST(VCardTest, APlainPlaceIsAPlainCard)
{
    NEEDS_VCARDS();
    const auto place =
        placeOf(R"({"type":"Feature","geometry":{"type":"Point","coordinates":[-8.1234567890123,47.24,400]},)"
                R"("properties":{"name":")"
                + QByteArray("Lake, house; \u05e9").repeated(8)
                + R"(","room":"3","street":"See;strasse","city":"Zürich","tags":["lbs-home","a,b"],)"
                  R"("aliases":[],"description":"one\ntwo","phone":"+41"}})");
    const QByteArray written = formats::toVCard(*place);
    EXPECT_THAT(
        written.toStdString(),
        HasSubstr("NOTE:one\\ntwo\r\nTEL:+41\r\nCATEGORIES:a\\,b\r\nADR;TYPE=home:;3;See\\;strasse;Z\xc3\xbcrich;;;\r\n"
                  "GEO:geo:47.24,-8.1234567890123,400\r\nEND:VCARD\r\n"));
    for (const QByteArray &line : written.split('\n')) {
        EXPECT_LE(line.size(), 76) << "75 bytes and a carriage return";
        EXPECT_EQ(QString::fromUtf8(line).toUtf8(), line) << "no character is cut";
    }
    const FormatFile read = readFile("vcard", written + written);
    ASSERT_EQ(read.members.size(), 2U);
    EXPECT_EQ(featureOf(*read.members[1].place), featureOf(*place));
}

TEST(VCardTest, EveryPlaceIsRestoredWithTheChangesOfOtherPrograms)
{
    NEEDS_VCARDS();
    const std::unique_ptr<Place> place = fullPlace();
    QByteArray written = formats::toVCard(*place);
    FormatFile read = readFile("vcard", written + written);
    ASSERT_EQ(read.members.size(), 2U);
    EXPECT_EQ(featureOf(*read.members[1].place), featureOf(*place));

    // Another program adds an id, a telephone number and a second address, changes the first address, and does not move
    // the place.
    written.replace("VERSION:4.0\r\n", "VERSION:4.0\r\nUID:book\r\n");
    const auto address = written.indexOf("\r\nADR;") + 2;
    written.replace(address, written.indexOf("GEO:") - address,
                    "TEL:+1\r\nBDAY:19700101\r\nADR;TYPE=work:;;Street 8;;;;\r\nADR:;;Second;;;;\r\n");
    read = readFile("vcard", written);
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
    EXPECT_THAT(featureOf(changed), HasSubstr(R"("id":"book")"));
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
