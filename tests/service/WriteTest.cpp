// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "places/PlaceHeader.h"
#include "places/PlaceManager.h"
#include "support/Placesd.h"
#include "support/SamplePlace.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <SQLiteCpp/SQLiteCpp.h>
#include <thread>

using namespace vela::platform::places;
using namespace std::chrono_literals;

namespace
{

Error::Type add(const char *name, int tags = 1)
{
    Place place;
    sample::fill(place, -1);
    place.setName(QString::fromUtf8(name));
    for (int i = 1; i < tags; ++i)
        place.addTag(QStringLiteral("tag %1").arg(i));
    return PlaceManager().addPlace(&place);
}

/// Writes that wait for one another, since another program holds the database.
class WriteTest : public testing::Test
{
protected:
    using Write = std::function<Error::Type()>;

    /// Makes the database busy for `time`, in which all of `writes` arrive. Returns how they ended.
    std::vector<Error::Type> writeTogether(const std::vector<Write> &writes, std::chrono::milliseconds time)
    {
        std::vector<Error::Type> outcomes(writes.size(), Error::Unspecified);
        std::vector<std::thread> clients;
        outside.exec("BEGIN IMMEDIATE");
        const auto end = std::chrono::steady_clock::now() + time;
        for (std::size_t i = 0; i < writes.size(); ++i)
            clients.emplace_back([&, i] { outcomes[i] = writes[i](); });
        while (std::chrono::steady_clock::now() < end) {
            const auto start = std::chrono::steady_clock::now();
            (void)PlaceManager().getTagsInUse();
            EXPECT_LT(std::chrono::steady_clock::now() - start, 200ms) << "readers do not wait for writers";
            std::this_thread::sleep_for(1ms);
        }
        outside.exec("ROLLBACK");
        for (std::thread &client : clients)
            client.join();
        return outcomes;
    }

    std::vector<std::string> names()
    {
        std::vector<std::string> names;
        for (const PlaceHeader *place : PlaceManager().findPlaces(QString(), nullptr, nullptr, SortRule(), 0, 1000)) {
            names.push_back(place->name().toStdString());
            delete place;
        }
        return names;
    }

    Placesd service{{}, "placesd_with_guide"}; // which gives a request two seconds
    SQLite::Database outside{service.path("places.db").toStdString(), SQLite::OPEN_READWRITE, 5000};
};

} // namespace

TEST_F(WriteTest, AFailedWriteReachesOnlyItsOwnClient)
{
    // What SQLite takes back of a transaction when a statement fails: what the statement did before, the statement, or
    // the whole transaction.
    for (const char *how : {"FAIL", "ABORT", "ROLLBACK"}) {
        const std::string name = how;
        outside.exec("CREATE TRIGGER on_" + name + " AFTER INSERT ON place WHEN new.sort_key = lower('" + name
                     + "') BEGIN SELECT RAISE(" + name + ", 'as told'); END");
    }
    const struct
    {
        Write write;
        Error::Type outcome;
    } rows[] = {
        {[] { return add("Good"); }, Error::Success},
        {[] { return add("FAIL"); }, Error::StorageFailed},
        {[] { return add("Good"); }, Error::Success},
        {[] { return add("Many tags", 1001); }, Error::LimitExceeded},
        {[] { return add("ABORT"); }, Error::StorageFailed},
        {[] { return PlaceManager().addTag(12345, QStringLiteral("beach")); }, Error::NotFound},
        {[] { return add("Good"); }, Error::Success},
        {[] { return PlaceManager().removePlace(12345); }, Error::NotFound},
    };
    const auto round = [&](const char *fatal) {
        std::vector<Write> writes;
        std::vector<Error::Type> expected;
        for (int i = 0; i < 3; ++i) {
            for (const auto &row : rows) {
                writes.push_back(row.write);
                expected.push_back(row.outcome);
            }
            writes.emplace_back([fatal] { return add(fatal); });
            expected.push_back(fatal == std::string("Good") ? Error::Success : Error::StorageFailed);
        }
        EXPECT_EQ(writeTogether(writes, 200ms), expected) << fatal;
    };
    round("Good");
    EXPECT_EQ(names(), std::vector<std::string>(12, "Good"));
    round("ROLLBACK");
    EXPECT_EQ(names(), std::vector<std::string>(12 + 9, "Good"));
}

TEST_F(WriteTest, WaitingForOthersIsPartOfTheTimeOfARequest)
{
    const std::vector<Write> writes(5, [] { return add("Good"); });
    EXPECT_EQ(writeTogether(writes, 1s), std::vector<Error::Type>(5, Error::Success));
    const std::vector<Error::Type> late = writeTogether(writes, 2500ms);
    // The first one is at the database when its time is over, and may still be done.
    EXPECT_GE(std::count(late.begin(), late.end(), Error::TimedOut), 4);
    EXPECT_EQ(names().size(), 5U + static_cast<unsigned>(std::count(late.begin(), late.end(), Error::Success)));
}
