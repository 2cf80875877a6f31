// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "requests/Service.h"

#include "Limits.h"
#include "model/LocationPrivate.h"
#include "places/Tags.h"
#include "support/HostileRequests.h"
#include "support/LocalService.h"
#include "support/Requests.h"
#include "support/SamplePlace.h"

#include <gmock/gmock.h>

#include <ctime>
#include <functional>
#include <limits>
#include <SQLiteCpp/SQLiteCpp.h>
#include <stdexcept>

using namespace placesd;
using orix_places_protocol::LAST_MESSAGE_TYPE;
using namespace requests;
using namespace vela::platform::places;
using orix_places_protocol::ReturnCode;
using testing::ElementsAre;
using testing::HasSubstr;
using vela::system::SecurityPerimeter;

namespace
{

std::time_t clockTime = -1; ///< Seconds; negative for the system's clock.

constexpr int PICKED = PlacePrivate::InRecentBucket;
constexpr int SAVED = PlacePrivate::ExplicitlySaved;
constexpr Caller OWNER = LocalService::OWNER;
constexpr Caller GUEST = LocalService::GUEST;
constexpr Caller OTHER_GUEST = LocalService::OTHER_GUEST;

using Shape = std::function<void(PlacePrivate &)>;

/// The request that stores a place, or changes the one with this id. Every field has a value, and a tag equals the
/// name.
std::string put(const char *name, const Shape &shape = {}, qint64 id = PlaceId::UNDEFINED_PERSISTED_ID,
                int perimeter = 0)
{
    sample::FullPlace place(id);
    PlacePrivate &data = place.data();
    data.setName(QLatin1String(name));
    data.m_tags = QStringList{QLatin1String(name)};
    data.setPersistenceMask(SAVED);
    data.setPrivate(false);
    data.setSearchTerm(QString());
    if (shape)
        shape(data);
    return store(place, perimeter);
}

void hide(PlacePrivate &place)
{
    place.setPrivate(true);
}

Shape withMask(int mask)
{
    return [mask](PlacePrivate &place) { place.setPersistenceMask(mask); };
}

int codeOf(const Answer &answer)
{
    return LocalService::codeIn(LocalService::bytesOf(answer));
}

Fields auxiliary(qint64 id)
{
    return Fields{i64(id), text(""), text(""), text("")} + coordinate(0, 0, 0, 0, 0) + texts({})
           + Fields{flag(true), flag(false), i32(0), text(""), flag(false), text(""), text(""), flag(false)} + texts({})
           + Fields{i32(0), i32(-1)};
}

/// The number that a reply begins with, behind its status.
template <typename Number>
Number numberIn(const std::string &reply)
{
    Number number = -1;
    EXPECT_GE(reply.size(), 8 + sizeof number);
    std::memcpy(&number, reply.data() + 8, sizeof number);
    return number;
}

class ServiceTest : public testing::Test
{
protected:
    ~ServiceTest() override { clockTime = -1; }

    int code(const std::string &request, const Caller &caller = OWNER) { return local.code(request, caller); }
    const PlacePrivate &stored(qint64 id)
    {
        m_place = local.store.place(id);
        return *PlacePrivate::privateFromPublic(m_place.get());
    }
    /// The number of places on the page of a find.
    int found(const Fields &searchRule, const Caller &caller, int perimeter = 0, Type type = Type::FindPlaces)
    {
        return numberIn<int>(local.exchange(find(50, 0, searchRule, UNSORTED, true, perimeter, type), caller));
    }

    LocalService local;

private:
    std::unique_ptr<Place> m_place;
};

} // namespace

#pragma GCC visibility push(default)
extern "C" std::time_t __real_time(std::time_t *out);
extern "C" std::time_t __wrap_time(std::time_t *out)
{
    return clockTime < 0 ? __real_time(out) : clockTime;
}
#pragma GCC visibility pop

/// Each type of request about a stored place, by caller, perimeter and place.
TEST(Service, ChecksThePermissionForEveryRequestAboutAPlace)
{
    constexpr qint64 WORK = 1;
    constexpr qint64 HIDDEN = 2;
    constexpr qint64 RECENT = 3;
    constexpr qint64 OWN = 4;
    constexpr qint64 NONE = 99;
    constexpr Caller STRANGER = {false, false, 9};
    constexpr int OK = ReturnCode::Success;
    constexpr int DENIED = ReturnCode::NotPermitted;
    constexpr int MISSING = ReturnCode::NoSuchPlace;
    const auto request = [](Type type, const Fields &more = {}) {
        return [type, more](qint64 id, int perimeter) { return withId(type, id, more, perimeter); };
    };
    const struct
    {
        const char *name;
        std::function<std::string(qint64, int)> request;
        int ofOthers; ///< Expected for a guest and saved places of the owner or of other guests.
    } types[] = {
        {"fetch", [](qint64 id, int perimeter) { return fetch(id, perimeter, "term"); }, OK},
        {"auxiliary data",
         [](qint64 id, int perimeter) { return message(head(Type::GetAuxiliaryData, perimeter) + auxiliary(id)); }, OK},
        {"update", [](qint64 id, int perimeter) { return put("updated", {}, id, perimeter); }, DENIED},
        {"use", request(Type::IncrementUsage, {text("term")}), DENIED},
        {"tag", request(Type::AddTag, {text("more")}), DENIED},
        {"untag", request(Type::RemoveTag, {text("untag")}), DENIED},
        {"unfavourite", request(Type::Unfav), DENIED},
        {"remove", request(Type::RemovePlace), DENIED},
    };
    for (const auto &row : types) {
        SCOPED_TRACE(row.name);
        LocalService local;
        const auto favourite = [](const Shape &shape) {
            return [shape](PlacePrivate &place) {
                place.m_tags = QStringList{Tags::Favorite, QStringLiteral("untag")};
                shape(place);
            };
        };
        const Shape shapes[] = {[](PlacePrivate &) {}, hide, withMask(PICKED)};
        for (const Shape &shape : shapes)
            ASSERT_EQ(local.code(put("owner's", favourite(shape))), OK);
        ASSERT_EQ(local.code(put("guest's", favourite(shapes[0])), GUEST), OK);
        const auto records = [&local] {
            std::string all;
            for (const qint64 id : {WORK, HIDDEN, RECENT, OWN})
                all += local.store.storedRecord(id, false);
            return all + local.store.recentTerms(QString()).join(QLatin1Char(' ')).toStdString();
        };
        const struct
        {
            qint64 id;
            Caller caller;
            int perimeter;
            int code;
        } refused[] = {
            {WORK, OWNER, SecurityPerimeter::Personal, DENIED},
            {WORK, GUEST, SecurityPerimeter::Personal, DENIED},
            {HIDDEN, GUEST, 0, MISSING},
            {RECENT, GUEST, 0, MISSING},
            {NONE, GUEST, 0, MISSING},
            {NONE, OWNER, 0, MISSING},
            {WORK, GUEST, 0, row.ofOthers},
            {OWN, OTHER_GUEST, 0, row.ofOthers},
            {WORK, STRANGER, 0, DENIED},
        };
        const std::string before = records();
        for (const auto &attempt : refused)
            EXPECT_EQ(local.code(row.request(attempt.id, attempt.perimeter), attempt.caller), attempt.code)
                << attempt.id << " " << attempt.caller.user << " " << attempt.perimeter;
        EXPECT_EQ(records(), before);
        for (const qint64 id : {WORK, HIDDEN, RECENT, OWN}) {
            const std::string record = local.store.storedRecord(id, false);
            EXPECT_EQ(local.code(row.request(id, SecurityPerimeter::Work), id == OWN ? GUEST : OWNER), OK) << id;
            EXPECT_EQ(local.store.storedRecord(id, false) != record, row.ofOthers == DENIED) << id;
        }
    }
    LocalService local;
    EXPECT_EQ(local.code(put("new", {}, -1, SecurityPerimeter::Personal)), DENIED);
    EXPECT_EQ(local.code(put("new", {}, -1, SecurityPerimeter::Work)), OK);
}

/// Requests that are not about a place.
TEST_F(ServiceTest, TheOpenChannelRefusesRequestsOfTheOwner)
{
    const struct
    {
        Type type;
        Fields body;
        int ofGuest;
        int ofOwner;
    } cases[] = {
        {Type::GetRecentSearchTerms, {text("")}, ReturnCode::NotPermitted, ReturnCode::Success},
        {Type::GetPlaceFromContact, {i32(1), i32(1), i32(1)}, ReturnCode::NotPermitted, ReturnCode::NoSuchPlace},
        {Type::RemoveRecentlyPickedPlaces, {}, ReturnCode::NotPermitted, ReturnCode::Success},
        {Type::Backup, {text("x")}, ReturnCode::NotPermitted, ReturnCode::BackupFailed},
        {Type::Restore, {text("x")}, ReturnCode::NotPermitted, ReturnCode::RestoreFailed},
        {Type::GetTags, {}, ReturnCode::Success, ReturnCode::Success},
        {Type::GetProviders, {}, ReturnCode::Success, ReturnCode::Success},
        {Type::GetHeaderFromFullPlace, sample::placeFields(), ReturnCode::Success, ReturnCode::Success},
        {Type::GetPlaceFromSuggestion, Fields{text("bar")} + coordinate(0, 0, 0, 0, 0), ReturnCode::NoSuchPlace,
         ReturnCode::NoSuchPlace},
        {Type(0), {}, ReturnCode::NotUnderstood, ReturnCode::NotUnderstood},
        {Type(static_cast<int>(LAST_MESSAGE_TYPE) + 1), {}, ReturnCode::NotUnderstood, ReturnCode::NotUnderstood},
        {Type(-1), {}, ReturnCode::NotUnderstood, ReturnCode::NotUnderstood},
    };
    for (const auto &row : cases) {
        const std::string request = message(head(row.type) + row.body);
        EXPECT_EQ(code(request, GUEST), row.ofGuest) << static_cast<int>(row.type);
        EXPECT_EQ(code(request), row.ofOwner) << static_cast<int>(row.type);
        EXPECT_EQ(code(request, {false, false, 9}), row.type >= Type(1) && row.type <= LAST_MESSAGE_TYPE
                                                        ? ReturnCode::NotPermitted
                                                        : ReturnCode::NotUnderstood);
    }
    Settings settings;
    settings.sessionKey = "key";
    LocalService guarded(std::move(settings));
    for (const char *key : {"", "ke", "keyx"})
        EXPECT_EQ(guarded.code(message(head(Type::GetTags, 0, key))), ReturnCode::NotPermitted) << key;
    EXPECT_EQ(guarded.code(message(head(Type::GetTags, 0, "key"))), ReturnCode::Success);
}

TEST_F(ServiceTest, FindsAndTagsContainOnlyPlacesOfTheCaller)
{
    const Shape common = [](PlacePrivate &place) { place.m_securityPerimeter = SecurityPerimeter::Default; };
    ASSERT_EQ(code(put("saved", common)), 0);
    ASSERT_EQ(code(put("private", hide)), 0);
    ASSERT_EQ(code(put("picked", withMask(PICKED))), 0);
    ASSERT_EQ(code(put("work")), 0);
    const Fields picked = rule(Kind::Nullary, Rules::RecentlyPicked);
    const struct
    {
        Fields rule;
        Caller caller;
        int perimeter;
        int found;
    } finds[] = {
        {EVERYTHING, OWNER, 0, 4}, {EVERYTHING, OWNER, SecurityPerimeter::Work, 3},
        {EVERYTHING, GUEST, 0, 2}, {EVERYTHING, GUEST, SecurityPerimeter::Work, 1},
        {EVERYTHING, GUEST, 1, 0}, {picked, OWNER, 0, 1},
        {picked, GUEST, 0, 0},
    };
    for (const auto &row : finds) {
        EXPECT_EQ(found(row.rule, row.caller, row.perimeter), row.found) << row.caller.external << row.perimeter;
        EXPECT_EQ(found(row.rule, row.caller, row.perimeter, Type::FindPlacesSize), row.found);
    }
    const auto tags = [&](const Caller &caller, int perimeter, std::size_t room = 1 << 20) {
        return local.exchange(message(head(Type::GetTags, perimeter)), caller, room);
    };
    const auto reply = [](std::initializer_list<std::string> all) {
        return message(Fields{i32(0), i32(265)} + texts(all));
    };
    EXPECT_EQ(tags(OWNER, 0), reply({"picked", "private", "saved", "work"}));
    EXPECT_EQ(tags(GUEST, 0), reply({"saved", "work"}));
    EXPECT_EQ(tags(GUEST, SecurityPerimeter::Work), reply({"work"}));
    EXPECT_EQ(tags(OWNER, 0, 16 + 2 * 8 + 13), reply({"picked", "private"})) << "as many as fit";
    EXPECT_EQ(tags(OWNER, 0, 16 + 2 * 8 + 12), reply({"picked"}));
    for (const int count : {-1, limits::PAGE_SIZE + 1})
        EXPECT_EQ(code(find(count, 0)), ReturnCode::LimitExceeded) << count;
    EXPECT_EQ(code(find(limits::PAGE_SIZE, 0)), ReturnCode::Success);
    EXPECT_EQ(code(find(1, -1)), ReturnCode::LimitExceeded);
}

TEST_F(ServiceTest, TheServiceSetsCountsAndTimesItself)
{
    clockTime = 1000;
    // A guest cannot set uses, and a place that is picked now is used now.
    const auto added = [&](int mask, const Caller &caller) {
        const Shape used = [mask](PlacePrivate &place) {
            place.setPersistenceMask(mask);
            place.setLastUsedTime(mask == PICKED ? 0 : 5);
        };
        return numberIn<qint64>(local.exchange(put("place", used), caller));
    };
    EXPECT_EQ(stored(added(SAVED, OWNER)).lastUsedTime(), 5U);
    EXPECT_EQ(stored(added(PICKED, OWNER)).lastUsedTime(), 1000U);
    EXPECT_EQ(stored(1).createdTime(), 1000U);
    EXPECT_EQ(stored(1).updatedTime(), 1000U);
    const qint64 own = added(SAVED | PICKED, GUEST);
    EXPECT_EQ(stored(own).lastUsedTime(), 0U);
    EXPECT_EQ(stored(own).usageCount(), 0);
    EXPECT_EQ(stored(own).persistenceMask(), SAVED);

    const auto change = [&](const std::string &request, const Caller &caller = OWNER) {
        ++clockTime;
        EXPECT_EQ(code(request, caller), ReturnCode::Success);
        return static_cast<quint64>(clockTime);
    };
    const quint64 used = change(withId(Type::IncrementUsage, 1, {text("")}));
    EXPECT_EQ(stored(1).lastUsedTime(), used);
    EXPECT_EQ(stored(1).usageCount(), 4);
    EXPECT_EQ(stored(1).updatedTime(), 1000U) << "a use is not an update";
    const Shape elsewhere = [](PlacePrivate &place) {
        place.m_securityPerimeter = SecurityPerimeter::Personal;
        place.addTag(Tags::Favorite);
    };
    const quint64 updated = change(put("renamed", elsewhere, 1));
    const PlacePrivate &renamed = stored(1);
    EXPECT_EQ(renamed.name(), QStringLiteral("renamed"));
    EXPECT_EQ(renamed.createdTime(), 1000U);
    EXPECT_EQ(renamed.updatedTime(), updated);
    EXPECT_EQ(renamed.lastUsedTime(), used);
    EXPECT_EQ(renamed.usageCount(), 4);
    EXPECT_EQ(renamed.securityPerimeter(), SecurityPerimeter::Work);
    const struct
    {
        std::string request;
        bool isUpdate;
        const char *tags;
    } changes[] = {
        {withId(Type::AddTag, 1, {text("beach")}), true, "renamed lbs-favorite beach"},
        {withId(Type::AddTag, 1, {text("beach")}), false, "renamed lbs-favorite beach"},
        {withId(Type::Unfav, 1), true, "renamed beach"},
        {withId(Type::Unfav, 1), false, "renamed beach"},
        {withId(Type::RemoveTag, 1, {text("renamed")}), true, "beach"},
        {withId(Type::RemoveTag, 1, {text("renamed")}), false, "beach"},
    };
    for (const auto &row : changes) {
        const quint64 before = stored(1).updatedTime();
        const quint64 time = change(row.request);
        EXPECT_EQ(stored(1).tags().join(QLatin1Char(' ')).toStdString(), row.tags);
        EXPECT_EQ(stored(1).updatedTime(), row.isUpdate ? time : before);
    }
    EXPECT_EQ(local.exchange(withId(Type::Unfav, 1)), message({i32(0), i32(270), flag(true)})) << "it is still stored";

    // Only the owner changes the bucket: a guest's update of its own place leaves it there.
    change(put("own", withMask(SAVED | PICKED), own));
    change(put("again", {}, own), GUEST);
    EXPECT_EQ(stored(own).persistenceMask(), SAVED | PICKED);
    // A count at its maximum stays there.
    const Shape most = [](PlacePrivate &place) { place.setUsageCount(std::numeric_limits<int>::max()); };
    ASSERT_EQ(code(put("most", most)), ReturnCode::Success);
    change(withId(Type::IncrementUsage, own + 1, {text("")}));
    EXPECT_EQ(stored(own + 1).usageCount(), std::numeric_limits<int>::max());

    EXPECT_EQ(code(message(head(Type::RemoveRecentlyPickedPlaces))), ReturnCode::Success);
    EXPECT_EQ(local.store.place(2), nullptr) << "picked, and not saved";
    EXPECT_EQ(stored(own).persistenceMask(), SAVED);
    EXPECT_EQ(stored(1).name(), QStringLiteral("renamed"));
}

TEST_F(ServiceTest, TermsOfTheOwnersRequestsAreKept)
{
    const auto withTerm = [](const char *term) {
        return [term](PlacePrivate &place) { place.setSearchTerm(QLatin1String(term)); };
    };
    const std::string requests[] = {
        put("one", withTerm("of an addition")), withId(Type::IncrementUsage, 1, {text("of a use")}),
        put("one", withTerm("of an update"), 1), fetch(1, 0, "of a fetch"), fetch(1, 0, "")};
    ASSERT_EQ(code(requests[0], GUEST), ReturnCode::Success);
    for (const std::string &request : requests)
        ASSERT_EQ(code(request, GUEST), ReturnCode::Success);
    EXPECT_THAT(local.store.recentTerms(QString()), testing::IsEmpty());
    for (const std::string &request : requests)
        EXPECT_EQ(code(request), ReturnCode::Success);
    EXPECT_THAT(local.store.recentTerms(QStringLiteral("OF A")),
                ElementsAre(QStringLiteral("of a fetch"), QStringLiteral("of an update"), QStringLiteral("of a use"),
                            QStringLiteral("of an addition")));
    for (qint64 id = 1; id < 4; ++id)
        EXPECT_EQ(stored(id).searchTerm(), QString()) << "the place does not store the term";
    EXPECT_EQ(code(fetch(99, 0, "of nothing")), ReturnCode::NoSuchPlace);
    EXPECT_EQ(code(withId(Type::IncrementUsage, 99, {text("of nothing")})), ReturnCode::NoSuchPlace);
    EXPECT_EQ(local.exchange(message(head(Type::GetRecentSearchTerms) + Fields{text("of a")})),
              message(Fields{i32(0), i32(258)} + texts({"of a fetch", "of an update", "of a use", "of an addition"})));
    EXPECT_EQ(found(rule(Kind::UnaryString, Rules::RecentSearchTerms, Operator::StartsWith, "of a"), OWNER), 4);
    EXPECT_EQ(found(rule(Kind::UnaryString, Rules::RecentSearchTerms, Operator::StartsWith, "of a"), GUEST), 0);
}

TEST_F(ServiceTest, GuestsHaveAQuota)
{
    SQLite::Database database(local.path("places.db"), SQLite::OPEN_READWRITE);
    const std::string tagFirst = withId(Type::AddTag, 1, {text("tag of the first place")});
    ASSERT_EQ(code(put("first"), GUEST), ReturnCode::Success);
    const auto set = [&](uid_t user, qint64 places, qint64 bytes) {
        database.exec("DELETE FROM guest_share");
        SQLite::Statement row(database, "INSERT INTO guest_share VALUES (?, ?, ?)");
        row.bind(1, static_cast<int64_t>(user));
        row.bind(2, static_cast<int64_t>(places));
        row.bind(3, static_cast<int64_t>(bytes));
        row.exec();
    };
    constexpr int FULL = ReturnCode::LimitExceeded;
    const struct
    {
        uid_t user;
        qint64 places;
        qint64 bytes;
        int ofAddition;
        int ofTag;
    } cases[] = {
        {GUEST.user, limits::OPEN_USER_PLACES - 1, limits::OPEN_USER_BYTES / 2, 0, 0},
        {GUEST.user, limits::OPEN_USER_PLACES, 0, FULL, 0},
        {GUEST.user, 1, limits::OPEN_USER_BYTES - 1, FULL, FULL},
        {OTHER_GUEST.user, limits::OPEN_PLACES - 1, 0, 0, 0},
        {OTHER_GUEST.user, limits::OPEN_PLACES, 0, FULL, FULL},
        {OTHER_GUEST.user, 1, limits::OPEN_BYTES - 1, FULL, FULL},
    };
    for (const auto &row : cases) {
        set(row.user, row.places, row.bytes);
        EXPECT_EQ(code(put("next"), GUEST), row.ofAddition) << row.user << " " << row.places << " " << row.bytes;
        EXPECT_EQ(code(put("next")), ReturnCode::Success) << "the owner has no quota";
        EXPECT_EQ(code(withId(Type::RemoveTag, 1, {text("tag of the first place")}), GUEST), ReturnCode::Success)
            << "changes that need no space work";
        set(row.user, row.places, row.bytes);
        database.exec("INSERT OR IGNORE INTO guest_share VALUES (7, 1, 0)");
        EXPECT_EQ(code(tagFirst, GUEST), row.ofTag) << row.user << " " << row.places << " " << row.bytes;
    }
}

TEST_F(ServiceTest, AReplyIsCutToItsMemory)
{
    for (const char *name : {"a", "b", "c"})
        ASSERT_EQ(code(put(name)), ReturnCode::Success);
    const std::size_t record = local.store.storedRecord(1, false).size();
    const auto page = [&](int offset, std::size_t room) {
        return local.exchange(find(9, offset, EVERYTHING, UNSORTED, false), OWNER, room);
    };
    const struct
    {
        std::size_t room;
        int count;
        bool hasMore;
    } cases[] = {
        {64 + 3 * (record + 16), 3, false}, {64 + 3 * (record + 16) - 1, 2, true}, {64 + record + 16, 1, true}};
    for (const auto &row : cases) {
        const std::string reply = page(0, row.room);
        const Fields start = {i32(0), i32(269), i32(row.count)};
        Fields end = {flag(row.hasMore), i32(0), i32(-1), i32(-1), i32(row.count)};
        end.insert(end.end(), static_cast<std::size_t>(2 * row.count), i32(-1));
        EXPECT_EQ(reply.substr(0, 12), message(start));
        EXPECT_EQ(reply.substr(reply.size() - message(end).size()), message(end)) << row.count;
    }
    EXPECT_EQ(LocalService::codeIn(page(0, 64 + record)), ReturnCode::Busy) << "an empty page would never be the last";
}

TEST_F(ServiceTest, AReasonRevealsOnlyTheRequestToGuests)
{
    ASSERT_EQ(code(put("open")), ReturnCode::Success);
    ASSERT_EQ(code(put("hidden", hide)), ReturnCode::Success);
    const auto reason = [&](const std::string &request, const Caller &caller = GUEST) {
        const std::string reply = local.exchange(request, caller);
        return reply.size() > 12 ? reply.substr(12) : std::string();
    };
    EXPECT_EQ(reason(fetch(2)), "no place has the id 2");
    EXPECT_EQ(reason(fetch(99)), "no place has the id 99");
    EXPECT_THAT(reason(withId(Type::RemovePlace, 1)), HasSubstr("that you added"));
    EXPECT_THAT(reason(message(head(Type::Backup))), HasSubstr("the owner's channel"));
    EXPECT_THAT(reason(message({i32(13)})), HasSubstr("ends before its last field"));
    EXPECT_THAT(reason(message(head(Type(77)))), HasSubstr("type 77"));
    EXPECT_THAT(reason(put("x", {}, 5)), HasSubstr("the id 5"));
    EXPECT_EQ(reason(fetch(1)).find("no place"), std::string::npos);
    for (const std::string &path : {"none/" + std::string(600, '\xFF'), "/none/" + std::string(3000, 'x') + "/y"}) {
        const std::string line = reason(message(head(Type::Backup) + Fields{text(path)}), OWNER);
        EXPECT_LE(line.size(), orix_places_protocol::REASON_SIZE);
        EXPECT_EQ(QString::fromStdString(line).toStdString(), line) << "it ends with a complete character";
    }
    EXPECT_THAT(reason(message(head(Type::Backup) + Fields{text("a\n\x1b[31m\x7F\xE2\x80\xA8z")}), OWNER),
                testing::StartsWith("a  [31m  z is not an absolute path"));
    SQLite::Database(local.path("places.db"), SQLite::OPEN_READWRITE).exec("DROP TABLE record");
    EXPECT_EQ(local.exchange(fetch(1), GUEST), message({i32(ReturnCode::StorageFailed), i32(268)}));
    EXPECT_THAT(reason(fetch(1), OWNER), testing::StartsWith(local.path("places.db") + ": "));
}

TEST_F(ServiceTest, AnyBytesAreHandled)
{
    ASSERT_EQ(code(put("kept")), ReturnCode::Success);
    const std::string before = local.store.storedRecord(1, false);
    HostileRequests requests(20261124);
    for (int i = 0; i < 3000; ++i)
        EXPECT_NE(code(requests.next(), i % 2 == 0 ? OWNER : GUEST), -1) << i;
    EXPECT_EQ(local.store.storedRecord(1, false), before);
    local.store.check([](const std::string &problem, qint64 place) { ADD_FAILURE() << problem << place; });
}

/// Fast threads only read, and the writer does not wait for providers.
TEST_F(ServiceTest, EachPoolPassesOnRequestsOfOtherPools)
{
    ASSERT_EQ(code(put("place")), ReturnCode::Success);
    Service fast(local.shared, Pool::Fast);
    Service writer(local.shared, Pool::Writer);
    const struct
    {
        std::string request;
        Pool pool;
        Pool afterWriter = Pool::Writer;
    } cases[] = {
        {put("next"), Pool::Writer},
        {put("next", {}, 1), Pool::Writer},
        {withId(Type::IncrementUsage, 1, {text("")}), Pool::Writer},
        {withId(Type::AddTag, 1, {text("x")}), Pool::Writer},
        {withId(Type::RemoveTag, 1, {text("x")}), Pool::Writer},
        {withId(Type::Unfav, 1), Pool::Writer},
        {withId(Type::RemovePlace, 99), Pool::Writer},
        {message(head(Type::RemoveRecentlyPickedPlaces)), Pool::Writer},
        {fetch(1), Pool::Fast},
        {fetch(1, 0, "term"), Pool::Writer},
        {fetch(99, 0, "term"), Pool::Fast},
        {find(9, 0), Pool::Fast},
        {message(head(Type::GetTags)), Pool::Fast},
        {message(head(Type::GetProviders)), Pool::Fast},
        {message(head(Type::GetAuxiliaryData) + auxiliary(1)), Pool::Fast},
        {message(head(Type::GetPlaceFromContact) + Fields{i32(1), i32(1), i32(1)}), Pool::Fast},
        {message(head(Type::Backup) + Fields{text("x")}), Pool::Slow},
        {message(head(Type::Restore) + Fields{text("x")}), Pool::Slow},
        {message(head(Type::GetPlaceFromSuggestion) + Fields{text("x")} + coordinate(0, 0, 0, 0, 0)), Pool::Slow,
         Pool::Slow},
    };
    for (const auto &row : cases) {
        const auto answer = [&](Service &service, const Deadline &deadline) {
            return service.answer(row.request.data(), static_cast<unsigned int>(row.request.size()), OWNER, deadline,
                                  1 << 20);
        };
        const Deadline deadline = Clock::now() + local.shared.requestTime;
        const int type = row.request[0];
        const Answer first = answer(fast, deadline);
        EXPECT_EQ(first.pool, row.pool) << type;
        EXPECT_EQ(first.reply != nullptr, row.pool == Pool::Fast) << type;
        if (row.pool == Pool::Writer) {
            EXPECT_EQ(answer(writer, deadline).pool, row.afterWriter) << type;
        }
        const Deadline passed = Clock::now() - std::chrono::seconds(1);
        EXPECT_EQ(codeOf(answer(writer, passed)), ReturnCode::TookTooLong) << type;
    }
    const RequestStatistics &statistics = local.shared.statistics;
    EXPECT_EQ(statistics.count(), 36U) << "a request that is passed on is counted where it is answered";
    EXPECT_GT(statistics.slowest().time, std::chrono::seconds(1));
}

/// After a failed statement, SQLite keeps its earlier changes (FAIL), rolls back the statement (ABORT) or rolls back
/// the transaction (ROLLBACK).
TEST_F(ServiceTest, AFailedWriteOfAGroupAffectsOnlyItsClient)
{
    SQLite::Database database(local.path("places.db"), SQLite::OPEN_READWRITE);
    for (const char *how : {"FAIL", "ABORT", "ROLLBACK"}) {
        const std::string name = how;
        database.exec("CREATE TRIGGER on_" + name + " AFTER INSERT ON place WHEN new.sort_key = lower('" + name
                      + "') BEGIN SELECT RAISE(" + name + ", 'as told'); END");
    }
    Service writer(local.shared, Pool::Writer);
    const auto writeTogether = [&](const std::vector<std::string> &requests, std::vector<int> &codes) {
        codes.clear();
        auto next = requests.begin();
        return writer.writeTogether(Clock::now() + local.shared.requestTime, [&] {
            const Answer answer = writer.answer(next->data(), static_cast<unsigned int>(next->size()), OWNER,
                                                Clock::now() + local.shared.requestTime, 1 << 20);
            codes.push_back(codeOf(answer));
            return ++next != requests.end();
        });
    };
    std::vector<int> codes;
    EXPECT_TRUE(
        writeTogether({put("good"), put("FAIL"), withId(Type::RemovePlace, 99), put("ABORT"), put("good")}, codes));
    EXPECT_THAT(codes, ElementsAre(ReturnCode::Success, ReturnCode::StorageFailed, ReturnCode::NoSuchPlace,
                                   ReturnCode::StorageFailed, ReturnCode::Success));
    EXPECT_EQ(local.store.placeCount(~0), 2);
    EXPECT_FALSE(writeTogether({put("good"), put("ROLLBACK"), put("good")}, codes)) << "they run again one at a time";
    EXPECT_EQ(local.store.placeCount(~0), 2);
    EXPECT_EQ(code(put("ROLLBACK")), ReturnCode::StorageFailed);
    EXPECT_FALSE(writer.writeTogether(Deadline::max(), []() -> bool { throw std::runtime_error("as told"); }));
    const std::lock_guard<std::timed_mutex> others(local.shared.store.writeLock);
    EXPECT_FALSE(writer.writeTogether(Clock::now(), [] { return false; }))
        << "others hold the write lock until the deadline";
}
