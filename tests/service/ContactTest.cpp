// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "manager/PlaceManagerPrivate.h"
#include "model/PlaceHeaderPrivate.h"
#include "places/ContactAuxiliaryData.h"
#include "places/PlaceHeader.h"
#include "places/PlaceManager.h"
#include "places/Tags.h"
#include "protocol/Protocol.h"
#include "support/Placesd.h"
#include "support/SamplePlace.h"

#include <gmock/gmock.h>

#include <QtCore/QFile>

using namespace vela::platform::places;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using Group = SearchResultGroup::Type;
using Names = std::vector<std::string>;

namespace
{

struct Cards
{
    QTemporaryDir folder;

    void write(const char *name, const QByteArray &cards) const
    {
        QFile file(folder.filePath(QLatin1String(name)));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(cards);
    }
};

QByteArray card(const QByteArray &lines)
{
    return QByteArray("BEGIN:VCARD\r\nVERSION:3.0\r\n") + lines + "END:VCARD\r\n";
}

const QByteArray ANNA =
    card("UID:anna\r\nFN:Anna Müller\r\nN:Müller;Anna;B;;\r\nNICKNAME:Annie\r\nORG:Acme\r\n"
         "TITLE:Engineer\r\nTEL;TYPE=CELL:+41 79\r\nTEL;TYPE=HOME:+41 44\r\nTEL;TYPE=WORK,FAX:+41 1\r\n"
         "EMAIL:anna@example.org\r\nURL:https://anna.example/\r\nNOTE:from school\r\n"
         "PHOTO;VALUE=URI:file:///photos/anna.jpg\r\n"
         "ADR;TYPE=HOME:;;Seestrasse 1;Zürich;;8001;Schweiz\r\n"
         "ADR;TYPE=WORK:;;Rue 2;Geneva;;1200;Switzerland\r\n"
         "ADR;TYPE=WORK:;;Main Street 3;Nowhere;;;\r\n");

/// The contacts of a folder, as places.
class ContactTest : public testing::Test
{
protected:
    ContactTest() { cards.write("anna.vcf", ANNA); }

    Names group(Group group, const char *term, bool excludeFavorites = false)
    {
        found =
            internal.findPlacesByGroup(group, &error, nullptr, QString::fromUtf8(term), 0, 20, {}, excludeFavorites);
        EXPECT_EQ(error, Error::Success);
        Names names;
        for (const auto &place : found)
            names.push_back(place->name().toStdString());
        return names;
    }
    const PlaceHeaderPrivate &header(int index)
    {
        return *PlaceHeaderPrivate::privateFromPublic(&dynamic_cast<const PlaceHeader &>(*found[index]));
    }
    std::unique_ptr<Place> fromContact(int account, int contact, int number)
    {
        Place *place = nullptr;
        error = protocol.getPlaceFromContact(account, contact, number, place);
        return std::unique_ptr<Place>(place);
    }
    int annasId()
    {
        group(Group::Contacts, "anna");
        return header(0).externalId().section(QLatin1Char(','), 1, 1).toInt();
    }

    Cards cards;
    Placesd service{{QStringLiteral("--contacts"), cards.folder.path(), QStringLiteral("--gazetteer"),
                     QStringLiteral(SOURCES "/examples/data/cities.geojson")}};
    PlaceManager manager;
    PlaceManagerPrivate internal;
    Protocol protocol;
    QList<QSharedPointer<AbstractPlace>> found;
    Error::Type error = Error::Unspecified;
};

} // namespace

TEST_F(ContactTest, TheirAddressesArePlacesWithAllThatTheCardSays)
{
    EXPECT_FALSE(group(Group::RemoteByName, "zurich").empty()) << "the gazetteer has been read";
    const int id = annasId();
    const std::unique_ptr<Place> home = fromContact(1, id, 1);
    ASSERT_TRUE(home);
    EXPECT_TRUE(home->hasTag(Tags::Home));
    EXPECT_EQ(home->source(), AbstractPlace::SourceContactService);
    EXPECT_EQ(home->primaryAddress().street(), QStringLiteral("Seestrasse 1"));
    EXPECT_EQ(home->primaryAddress().isoAlpha2CountryCode(), QStringLiteral("CH")) << "a country in its own language";
    EXPECT_NEAR(home->primaryCoordinates().latitude(), 47.37, 0.1) << "found by the gazetteer";
    const ContactAuxiliaryData contact(home->auxiliaryData(0));
    EXPECT_EQ(contact.externalId(), QStringLiteral("1,%1,1").arg(id));
    const QStringList texts = {contact.lastName(), contact.company(), contact.mobilePhone(),
                               contact.fax(),      contact.notes(),   contact.photoPathOriginal()};
    EXPECT_EQ(texts.join(QLatin1Char('|')).toStdString(), "Müller|Acme|+41 79|+41 1|from school|/photos/anna.jpg");
    EXPECT_FALSE(fromContact(1, id, 5)->hasCoordinates()) << "its second work address, which no gazetteer knows";
    EXPECT_FALSE(fromContact(1, id, 4));
    EXPECT_EQ(error, Error::NotFound);
}

TEST_F(ContactTest, TheCountryOfAnAddressIsTheOneThatItNames)
{
    EXPECT_FALSE(group(Group::RemoteByName, "zurich").empty()) << "the gazetteer has been read";
    const struct
    {
        const char *country;
        const char *code;
        bool isFound;
    } cases[] = {{"", "", true},       {" ", "", true},    {"Polska", "PL", false}, {"Suisse", "CH", true},
                 {"World", "", false}, {"ch", "CH", true}, {"Europe", "", false}};
    for (const auto &row : cases) {
        cards.write("one.vcf", card(QByteArray("FN:One\r\nADR;TYPE=HOME:;;;Zürich;;;") + row.country + "\r\n"));
        ASSERT_THAT(group(Group::Contacts, "one"), ElementsAre("One"));
        const std::unique_ptr<Place> place(internal.getPlace(found[0].data(), &error));
        ASSERT_TRUE(place) << row.country;
        EXPECT_EQ(place->primaryAddress().isoAlpha2CountryCode(), QLatin1String(row.code)) << row.country;
        EXPECT_EQ(place->hasCoordinates(), row.isFound) << row.country;
    }
}

TEST_F(ContactTest, AStoredAddressIsThatPlaceAndStandsOnce)
{
    const int id = annasId();
    const std::unique_ptr<Place> resolved(internal.getPlace(found[0].data(), &error));
    ASSERT_TRUE(resolved) << "what a listing gives can be fetched";
    ASSERT_EQ(manager.fav(found[0].data()), Error::Success);
    const qint64 stored = found[0]->id();
    EXPECT_EQ(group(Group::Contacts, "anna").size(), 3U);
    EXPECT_EQ(std::count_if(found.begin(), found.end(), [](const auto &place) { return place->id() != -1; }), 1);
    EXPECT_EQ(group(Group::Contacts, "anna", true).size(), 2U) << "a favourite can be left out";
    EXPECT_EQ(fromContact(1, id, 1)->id(), stored);
    EXPECT_THAT(group(Group::NonContacts, "anna"), IsEmpty());

    std::unique_ptr<Place> place(manager.getPlace(stored));
    place->setName(QStringLiteral("Home of a friend"));
    ASSERT_EQ(manager.updatePlace(place.get()), Error::Success);
    EXPECT_THAT(group(Group::Contacts, "anna"), UnorderedElementsAre("Anna Müller", "Anna Müller", "Home of a friend"))
        << "found by the contact's name, under its own";
    ASSERT_EQ(manager.removePlace(stored), Error::Success);
    EXPECT_EQ(group(Group::Contacts, "anna"), Names(3, "Anna Müller"));
}

TEST_F(ContactTest, TheFolderIsReadAgainWhenItChanges)
{
    const int id = annasId();
    cards.write("bob.vcf", card("UID:bob\r\nFN:Bob\r\nADR;TYPE=HOME:;;;Berlin;;;Germany\r\n"));
    EXPECT_THAT(group(Group::Contacts, "bob"), ElementsAre("Bob"));
    cards.write("bob.vcf", card("UID:bob\r\nFN:Robert\r\nADR;TYPE=HOME:;;;Berlin;;;Germany\r\n"));
    EXPECT_THAT(group(Group::Contacts, "bob"), IsEmpty());
    EXPECT_THAT(group(Group::Contacts, "rob"), ElementsAre("Robert"));
    EXPECT_THAT(group(Group::Contacts, "robret"), ElementsAre("Robert"));
    EXPECT_THAT(group(Group::Contacts, "robert berlni"), ElementsAre("Robert")) << "the address has words, too";
    QFile::rename(cards.folder.filePath(QStringLiteral("anna.vcf")), cards.folder.filePath(QStringLiteral("z.vcf")));
    EXPECT_EQ(annasId(), id) << "a contact keeps its number wherever its card is";
    service.kill();
    service.start();
    EXPECT_EQ(annasId(), id) << "and from start to start";
}

TEST_F(ContactTest, WhatCanBeReadOfABadCardIs)
{
    cards.write("old.vcf", "BEGIN:VCARD\r\nVERSION:2.1\r\nN;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:M=C3=BCller;Old\r\n"
                           "ADR;WORK:;;Weg 1;Bern;;;CH\r\nEND:VCARD\r\n");
    cards.write("cut.vcf", card("FN:Whole\r\nADR:;;Weg 1;Bern;;;CH\r\n")
                               + card("FN:Lost its end\r\nADR:;;Weg 2;Bern;;;CH\r\n").chopped(14)
                               + card("FN:After\r\nADR:;;Weg 3;Bern;;;CH\r\n")
                               + "BEGIN:VCARD\r\nVERSION:3.0\r\nFN:Ends early\r\nADR:;;Weg 4;Bern;;;CH\r\nTEL:+4");
    cards.write("huge.vcf", card("FN:Before\r\nADR:;;Weg 5;Bern;;;CH\r\n") + "BEGIN:VCARD\r\nFN:Huge\r\nNOTE:"
                                + QByteArray(6 * 1024 * 1024, 'x') + "\r\nPHOTO;ENCODING=b:" + QByteArray(100000, 'x')
                                + "\r\n yyy\r\nTITLE:" + QByteArray(30000, 'x') + "\r\nADR:;;W;B;;;\r\n"
                                + ("X-A:" + QByteArray(15000, 'x') + "\r\n").repeated(20) + "END:VCARD\r\n"
                                + card("FN:Behind\r\nADR:;;Weg 6;Bern;;;CH\r\n"));
    QByteArray numbers;
    for (int i = 0; i < 40000; ++i)
        numbers += "TEL:" + QByteArray::number(i) + "\r\n";
    cards.write("numbers.vcf", card("FN:Numbers\r\nADR:;;Weg 7;Bern;;;CH\r\n" + numbers));
    QByteArray noise(100000, 'x');
    for (int i = 0; i < noise.size(); ++i)
        noise[i] = static_cast<char>(i * 7919 >> 3);
    cards.write("noise.vcf", noise + "\nBEGIN:VCARD\n" + noise + "\nEND:VCARD\n" + card("ADR:;;No name;;;;\r\n"));
    EXPECT_THAT(group(Group::Contacts, ""),
                UnorderedElementsAre("After", "Anna Müller", "Anna Müller", "Anna Müller", "Before", "Behind",
                                     "Ends early", "Huge", "Lost its end", "Numbers", "Old Müller", "Whole"));
    EXPECT_THAT(service.log(), HasSubstr(": 5 lines are too long"))
        << "the note, the title, and what goes beyond 256 KiB; no picture";
    EXPECT_THAT(service.log(), HasSubstr(": 39504 lines are too long"));
}

TEST_F(ContactTest, RoomsStoredPlacesAndContactsComeOneAfterTheOther)
{
    cards.write("room.vcf", card("UID:room\r\nFN:Matter horn\r\nKIND:location\r\nGEO:46.5;7.5\r\n"));
    cards.write("person.vcf", card("UID:p\r\nFN:Adam Matter\r\nADR;TYPE=HOME:;;;Bern;;;CH\r\n"));
    Place place;
    sample::fill(place, -1);
    place.setName(QStringLiteral("Zermatt Matter"));
    ASSERT_EQ(manager.addPlace(&place), Error::Success);
    EXPECT_THAT(group(Group::Local, "matter"), ElementsAre("Matter horn", "Zermatt Matter", "Adam Matter"));
    EXPECT_THAT(group(Group::Local, "matter", true), ElementsAre("Adam Matter", "Matter horn"));
}

TEST_F(ContactTest, TheExternalChannelSeesNoneOfThem)
{
    using namespace wire;
    const auto reply = [](int type, const Fields &body) {
        return Placesd::exchange(message(Fields{i32(type), i32(0), text("")} + body), "places.external");
    };
    const std::string id = QStringLiteral("1,%1,1").arg(annasId()).toStdString();
    const auto find = [&](int field) {
        return reply(13, Fields{i32(5), i32(0)} + coordinate(0, 0, 0, 0, 0)
                             + Fields{flag(true), i32(13), i32(field), i32(2), text(""), text(""), i32(0), i32(0),
                                      i32(1), i32(1), i32(0), i32(0), i32(-1), i32(-1)});
    };
    for (const int field : {10, 17, 23})
        EXPECT_EQ(find(field).substr(0, 12), message({i32(0), i32(269), i32(0)})) << field;
    EXPECT_EQ(reply(12, Fields{i64(-1), text(id), text("contact"), text("")}), message({i32(54), i32(268)}));
    const Field reason = text("only the owner's channel, places, answers requests of this type");
    EXPECT_EQ(reply(10, Fields{i32(1), i32(1), i32(1)}), message({i32(60), i32(266), reason}));
}
