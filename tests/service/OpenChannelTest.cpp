// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "Limits.h"
#include "manager/PlaceManagerPrivate.h"
#include "model/LocationPrivate.h"
#include "model/PlacePrivate.h"
#include "places/PlaceHeader.h"
#include "protocol/PlacesAPIEncoder.h"
#include "protocol/Protocol.h"
#include "support/Placesd.h"
#include "support/Requests.h"
#include "support/SamplePlace.h"

#include <gmock/gmock.h>

#include <QtCore/QFile>

#include <SQLiteCpp/SQLiteCpp.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

using namespace requests;
using namespace vela::platform::places;
using vela::system::SecurityPerimeter;
using Group = SearchResultGroup::Type;
namespace limits = placesd::limits;

namespace
{

constexpr char OPEN[] = "places.external";
const Fields EVERYTHING = rule(1, 0, 1, "", 0);

Fields named(const char *term, int field)
{
    return rule(13, field, 7, term, 0);
}

/// A find in a perimeter; the number of places on its page.
int found(const Fields &searchRule, const char *channel, int perimeter = 0)
{
    int count = -1;
    const std::string all = find(50, 0, searchRule);
    const std::string reply = Placesd::exchange(message({i32(13), i32(perimeter)}) + all.substr(8), channel);
    if (reply.size() >= 12)
        std::memcpy(&count, reply.data() + 8, sizeof count);
    return count;
}

std::string tags(const char *channel, int perimeter = 0)
{
    return Placesd::exchange(message(head(9, perimeter)), channel);
}

std::string reply(std::initializer_list<std::string> tags)
{
    return message(Fields{i32(0), i32(265)} + texts(tags));
}

/// A place near the lake, with a tag of its own.
void fill(Place &place, const char *name, int mask = PlacePrivate::ExplicitlySaved, bool isPrivate = false)
{
    sample::fill(place, PlaceId::UNDEFINED_PERSISTED_ID);
    PlacePrivate &data = *PlacePrivate::privateFromPublic(&place);
    data.setName(QLatin1String(name));
    data.m_tags = QStringList{QLatin1String(name)};
    data.setPersistenceMask(mask);
    data.setPrivate(isPrivate);
    data.m_securityPerimeter = SecurityPerimeter::Default;
}

/// The request that stores a place, or changes one that has an id.
std::string store(const Place &place)
{
    orix_places_protocol::PlacesAPIEncoder request;
    if (place.isPersisted())
        request.encodeUpdatePlace(place);
    else
        request.encodeAddPlace(place);
    char *bytes = nullptr;
    int length = 0;
    request.getData(bytes, length);
    return {bytes, static_cast<std::size_t>(length)};
}

std::string store(const char *name, qint64 id, int mask, bool isPrivate = false)
{
    Place place;
    fill(place, name, mask, isPrivate);
    PlacePrivate::privateFromPublic(&place)->setId(id);
    return store(place);
}

std::string withId(int type, qint64 id, const Fields &more = {}, int perimeter = 0)
{
    return message(head(type, perimeter) + Fields{i64(id)} + more);
}

std::string fetch(qint64 id, int perimeter = 0)
{
    return withId(12, id, {text(""), text(""), text("term of a fetch")}, perimeter);
}

/// What another user gets on the open channel; the test runs as root.
int codeOf(uid_t user, const Placesd &service, const std::string &request)
{
    EXPECT_EQ(::syscall(SYS_setresuid, -1, user, -1), 0);
    const auto socket = connectTo(service.path(OPEN).toStdString());
    EXPECT_EQ(::syscall(SYS_setresuid, -1, 0, -1), 0);
    const auto deadline = vela::system::channel::Clock::now() + std::chrono::seconds(10);
    EXPECT_TRUE(vela::system::channel::sendMessage(socket.get(), request.data(),
                                                   static_cast<std::uint32_t>(request.size()), deadline));
    int reply[2] = {-1, -1};
    EXPECT_TRUE(vela::system::channel::receiveAll(socket.get(), reply, sizeof reply, deadline));
    return reply[1];
}

} // namespace

TEST(TheOpenChannel, ChangesNothingThatIsNotItsOwn)
{
    constexpr qint64 SAVED = 1;
    constexpr qint64 PRIVATE = 2;
    constexpr qint64 PICKED = 3;
    constexpr qint64 WORK = 4;
    constexpr qint64 OWN = 5;
    constexpr int SAVE = PlacePrivate::ExplicitlySaved;
    constexpr int PICK = PlacePrivate::InRecentBucket;
    Placesd service({QStringLiteral("--gazetteer"), QString()});
    ASSERT_EQ(Placesd::code(store("saved", -1, SAVE)), 0);
    ASSERT_EQ(Placesd::code(store("private", -1, SAVE, true)), 0);
    ASSERT_EQ(Placesd::code(store("picked", -1, PICK)), 0);
    Place work;
    fill(work, "work");
    PlacePrivate::privateFromPublic(&work)->m_securityPerimeter = SecurityPerimeter::Work;
    ASSERT_EQ(Placesd::code(store(work)), 0);
    ASSERT_EQ(Placesd::code(store("own", -1, SAVE | PICK), OPEN), 0);

    const auto state = [] {
        std::string records = Placesd::exchange(message(head(2) + Fields{text("")})) + tags("places");
        for (const qint64 id : {SAVED, PRIVATE, PICKED, WORK})
            records += Placesd::exchange(withId(12, id, {text(""), text(""), text("")}));
        return records + Placesd::exchange(find(50, 0, rule(3, 8, 1, "", 0)));
    };
    const std::string before = state();
    const struct
    {
        const char *name;
        std::string request;
        int onOpen;
        int onOwners; // -1: not tried
    } attempts[] = {
        {"fetch a saved place", fetch(SAVED), 0, 0},
        {"fetch a private place", fetch(PRIVATE), 54, 0},
        {"fetch a picked place", fetch(PICKED), 54, 0},
        {"fetch a work place as a personal one", fetch(WORK, 1), 60, 60},
        {"fetch none", fetch(99), 54, 54},
        {"add a place that was only picked", store("x", -1, PICK), 57, -1},
        {"add a private place", store("x", -1, SAVE, true), 57, -1},
        {"demote an own place", store("own", OWN, PICK), 57, -1},
        {"make an own place private", store("own", OWN, SAVE, true), 57, -1},
        {"update an own place", store("own", OWN, SAVE | PICK), 0, 0},
        {"tag an own place", withId(7, OWN, {text("tagged")}), 0, 0},
        {"use an own place", withId(6, OWN, {text("term of a use")}), 0, 0},
        {"demote a saved place", store("x", SAVED, PICK), 57, -1},
        {"update a saved place", store("x", SAVED, SAVE), 60, 0},
        {"update a private place", store("x", PRIVATE, SAVE), 54, -1},
        {"tag a saved place", withId(7, SAVED, {text("x")}), 60, 0},
        {"tag a private place", withId(7, PRIVATE, {text("x")}), 54, 0},
        {"untag a saved place", withId(8, SAVED, {text("saved")}), 60, 0},
        {"unfavourite a saved place", withId(14, SAVED), 60, 0},
        {"use a saved place", withId(6, SAVED, {text("x")}), 60, 0},
        {"use a picked place", withId(6, PICKED, {text("x")}), 54, 0},
        {"remove a saved place", withId(4, SAVED), 60, 0},
        {"remove a private place", withId(4, PRIVATE), 54, 0},
        {"remove a picked place", withId(4, PICKED), 54, 0},
        {"recent search terms", message(head(2) + Fields{text("")}), 60, 0},
        {"a contact", message(head(10) + Fields{i32(1), i32(1), i32(1)}), 60, 54},
        {"empty the recent bucket", message(head(11)), 60, 0},
        {"backup", message(head(15) + Fields{text("/x")}), 60, -1},
        {"restore", message(head(16) + Fields{text("/x")}), 60, -1},
    };
    for (const auto &row : attempts)
        EXPECT_EQ(Placesd::code(row.request, OPEN), row.onOpen) << row.name << ", on the open channel";
    EXPECT_EQ(Placesd::code(withId(8, OWN, {text("tagged")}), OPEN), 0);
    EXPECT_EQ(state(), before);
    EXPECT_EQ(tags(OPEN), reply({"own", "saved", "work"}));
    EXPECT_EQ(tags(OPEN, SecurityPerimeter::Work), reply({"work"}));
    EXPECT_EQ(tags("places"), reply({"own", "picked", "private", "saved", "work"}));
    EXPECT_EQ(found(EVERYTHING, OPEN), 3);
    EXPECT_EQ(found(EVERYTHING, "places"), 5);
    EXPECT_EQ(found(EVERYTHING, OPEN, SecurityPerimeter::Work), 1);
    EXPECT_EQ(found(EVERYTHING, OPEN, SecurityPerimeter::Personal), 0);
    EXPECT_EQ(found(rule(3, 8, 1, "", 0), OPEN), 0) << "nothing is recently picked there";
    if (::geteuid() == 0) {
        ::chmod(service.path(".").toLocal8Bit().constData(), 0711);
        EXPECT_EQ(codeOf(12345, service, fetch(OWN)), 0);
        EXPECT_EQ(codeOf(12345, service, withId(4, OWN)), 60) << "another user's place";
    }
    for (const auto &row : attempts) {
        const int code = row.onOwners >= 0 ? Placesd::code(row.request) : row.onOwners;
        EXPECT_EQ(code, row.onOwners) << row.name << ", on the owner's channel";
    }
    ASSERT_EQ(Placesd::code(store("picked", OWN, SAVE | PICK)), 0);
    EXPECT_EQ(Placesd::code(store("own", OWN, SAVE), OPEN), 0);
    EXPECT_EQ(found(rule(3, 8, 1, "", 0), "places"), 1) << "what the owner picked";
    EXPECT_EQ(Placesd::code(withId(4, OWN), OPEN), 0) << "after the owner changed it";
}

TEST(TheOpenChannel, PutsNothingInPlaceOfContactsAndRemotePlaces)
{
    QTemporaryDir cards;
    QFile card(cards.filePath(QStringLiteral("anna.vcf")));
    ASSERT_TRUE(card.open(QIODevice::WriteOnly));
    card.write("BEGIN:VCARD\r\nVERSION:3.0\r\nUID:anna\r\nFN:Anna\r\nADR;TYPE=HOME:;;;Bern;;;CH\r\nEND:VCARD\r\n");
    card.close();
    Placesd service({QStringLiteral("--contacts"), cards.path(), QStringLiteral("--gazetteer"),
                     QStringLiteral(SOURCES "/examples/data/cities.geojson")});
    const auto first = [](Group group, const char *term) {
        Error::Type error = Error::Unspecified;
        const auto found =
            PlaceManagerPrivate().findPlacesByGroup(group, &error, nullptr, QLatin1String(term), 0, 9, {}, false);
        EXPECT_EQ(error, Error::Success);
        EXPECT_EQ(group == Group::Contacts ? found.size() : 1, 1);
        return found.isEmpty() ? QSharedPointer<AbstractPlace>() : found.first();
    };
    const struct
    {
        const char *name;
        Group group;
        int field;
    } cases[] = {{"Anna", Group::Contacts, 17}, {"Zurich", Group::RemoteByName, 24}};
    for (const auto &row : cases) {
        SCOPED_TRACE(row.name);
        const auto real = first(row.group, row.name);
        ASSERT_TRUE(real);
        const auto &header = dynamic_cast<const PlaceHeader &>(*real);
        const std::unique_ptr<Place> place(PlaceManagerPrivate().getPlace(&header, nullptr));
        ASSERT_TRUE(place);
        Place forged;
        PlacePrivate &data = *PlacePrivate::privateFromPublic(&forged);
        data = *PlacePrivate::privateFromPublic(place.get());
        data.setPersistenceMask(PlacePrivate::ExplicitlySaved);
        data.m_locations[0].setCoordinates(Coordinates(0, 0));
        ASSERT_EQ(Placesd::code(store(forged), OPEN), 0);

        EXPECT_FALSE(first(row.group, row.name)->isPersisted());
        const std::unique_ptr<Place> again(PlaceManagerPrivate().getPlace(&header, nullptr));
        ASSERT_TRUE(again);
        EXPECT_EQ(again->primaryCoordinates(), place->primaryCoordinates());

        // The owner's own is that place, and where it is private the open channel does not notice.
        const int remote = found(named(row.name, 24), OPEN);
        data.setPrivate(true);
        ASSERT_EQ(Placesd::code(store(forged)), 0);
        EXPECT_TRUE(first(row.group, row.name)->isPersisted());
        EXPECT_EQ(found(named(row.name, 24), OPEN), remote);
    }
}

TEST(TheOpenChannel, HasAQuota)
{
    Placesd service({QStringLiteral("--gazetteer"), QString()});
    SQLite::Database database(service.path("places.db").toStdString(), SQLite::OPEN_READWRITE);
    ASSERT_EQ(Placesd::code(store("first", -1, 2), OPEN), 0);
    const qint64 bytes = database.execAndGet("SELECT bytes FROM guest_share").getInt64();
    EXPECT_GT(bytes, 2 * static_cast<qint64>(store("first", -1, 2).size()) / 3);
    ASSERT_EQ(Placesd::code(withId(7, 1, {text(std::string(1000, 't'))}), OPEN), 0);
    EXPECT_GT(database.execAndGet("SELECT bytes FROM guest_share").getInt64(), bytes + 1000);

    constexpr qint64 OTHER = 12345;
    const struct
    {
        const char *name;
        qint64 user;
        qint64 places;
        qint64 bytes;
        int code; // of what stores more
    } cases[] = {
        {"room", ::geteuid(), limits::OPEN_USER_PLACES - 1, limits::OPEN_USER_BYTES / 2, 0},
        {"places of a user", ::geteuid(), limits::OPEN_USER_PLACES, 9999, 62},
        {"bytes of a user", ::geteuid(), 9, limits::OPEN_USER_BYTES, 62},
        {"places of all", OTHER, limits::OPEN_PLACES, 9999, 62},
        {"bytes of all", OTHER, 9, limits::OPEN_BYTES, 62},
    };
    for (const auto &row : cases) {
        database.exec("DELETE FROM guest_share");
        SQLite::Statement set(database, "INSERT INTO guest_share VALUES (?, ?, ?)");
        for (int i = 0; i < 3; ++i)
            set.bind(i + 1, static_cast<int64_t>(std::array{row.user, row.places, row.bytes}[std::size_t(i)]));
        set.exec();
        const int places = found(EVERYTHING, "places");
        EXPECT_EQ(Placesd::code(store("next", -1, 2), OPEN), row.code) << row.name;
        EXPECT_EQ(found(EVERYTHING, "places"), places + (row.code == 0 ? 1 : 0)) << row.name;
        EXPECT_EQ(Placesd::code(store("next", -1, 2)), 0) << "the owner has no quota";
    }
    const auto fillUp = [&](qint64 beyond) {
        database.exec("DELETE FROM guest_share; INSERT INTO guest_share SELECT user, count(*), "
                      + std::to_string(limits::OPEN_USER_BYTES + beyond) + " FROM guest GROUP BY user");
    };
    fillUp(99999);
    EXPECT_EQ(Placesd::code(withId(7, 1, {text("more")}), OPEN), 62);
    EXPECT_EQ(Placesd::code(withId(8, 1, {text("first")}), OPEN), 0) << "what shrinks a place goes on";
    fillUp(0);
    EXPECT_EQ(Placesd::code(withId(4, 1), OPEN), 0);
    EXPECT_EQ(Placesd::code(store("fits", -1, 2), OPEN), 0) << "what was removed counts no more";
}
