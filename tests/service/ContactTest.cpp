// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "manager/PlaceManagerPrivate.h"
#include "model/PlaceHeaderPrivate.h"
#include "places/PlaceHeader.h"
#include "places/PlaceManager.h"
#include "protocol/Protocol.h"
#include "support/Files.h"
#include "support/Placesd.h"
#include "support/SamplePlace.h"
#include "support/VCards.h"

#include <gmock/gmock.h>

#include <QtCore/QTemporaryDir>

using files::card;
using namespace vela::platform::places;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using Group = SearchResultGroup::Type;
using Names = std::vector<std::string>;

namespace
{

const QByteArray ANNA = card("UID:anna\r\nFN:Anna M\xC3\xBCller\r\nADR;TYPE=HOME:;;Seestrasse 1;Bern;;8001;Schweiz\r\n"
                             "ADR;TYPE=WORK:;;Rue 2;Geneva;;1200;\r\nADR;TYPE=WORK:;;Main Street 3;Nowhere;;;\r\n");

/// The contacts of a folder, as places.
class ContactTest : public testing::Test
{
protected:
    ContactTest() { write("anna.vcf", ANNA); }

    void SetUp() override { NEEDS_VCARDS(); }
    void write(const char *name, const QByteArray &cards) const
    {
        files::write(folder.filePath(QLatin1String(name)), cards);
    }
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

    QTemporaryDir folder;
    Placesd service{contactsIn(folder.path()) + QStringList{QStringLiteral("--gazetteer"), QString()}};
    PlaceManager manager;
    PlaceManagerPrivate internal;
    Protocol protocol;
    QList<QSharedPointer<AbstractPlace>> found;
    Error::Type error = Error::Unspecified;
};

} // namespace

TEST_F(ContactTest, AStoredAddressIsListedOnce)
{
    const int id = annasId();
    const std::unique_ptr<Place> resolved(internal.getPlace(found[0].data(), &error));
    ASSERT_TRUE(resolved) << "a listed place can be fetched";
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
        << "found by the contact's name, listed with its own";
    ASSERT_EQ(manager.removePlace(stored), Error::Success);
    EXPECT_EQ(group(Group::Contacts, "anna"), Names(3, "Anna Müller"));
}

TEST_F(ContactTest, RoomsStoredPlacesAndContactsAreListedInThisOrder)
{
    write("room.vcf", card("UID:room\r\nFN:Matter horn\r\nKIND:location\r\nGEO:46.5;7.5\r\n"));
    write("person.vcf", card("UID:p\r\nFN:Adam Matter\r\nADR;TYPE=HOME:;;;Bern;;;CH\r\n"));
    sample::FullPlace place(-1);
    place.setName(QStringLiteral("Zermatt Matter"));
    ASSERT_EQ(manager.addPlace(&place), Error::Success);
    EXPECT_THAT(group(Group::Local, "matter"), ElementsAre("Matter horn", "Zermatt Matter", "Adam Matter"));
    EXPECT_THAT(group(Group::Local, "matter", true), ElementsAre("Adam Matter", "Matter horn"));
}

TEST_F(ContactTest, TheExternalChannelHasNoContacts)
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
