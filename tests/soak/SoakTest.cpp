// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "soak/HonestClient.h"
#include "store/Check.h"
#include "support/HostileRequests.h"
#include "support/ManyClients.h"
#include "support/Placesd.h"

#include <gtest/gtest.h>

#include <QtCore/QFileInfo>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <deque>
#include <optional>
#include <sys/resource.h>
#include <thread>

using namespace std::chrono;

namespace
{

constexpr unsigned HONEST_CLIENTS = 6;
constexpr seconds SHORT_SOAK{20};
/// Space for the service's log and database on a full disk.
constexpr qint64 LEFT_ON_DISK = 128 * 1024;

/// A service with all disturbances at once.
class SoakTest : public testing::Test
{
protected:
    void start()
    {
        for (unsigned i = 0; i < HONEST_CLIENTS; ++i)
            honest.emplace_back(i, score);
        for (HonestClient &client : honest)
            threads.emplace_back([&] { client.run(isOver); });
        for (const char *channel : {"places", "places.external"})
            threads.emplace_back([this, channel] { attack(channel); });
    }

    void end()
    {
        isOver = true;
        for (std::thread &thread : threads)
            thread.join();
        stalled.clear();
    }

    /// Sends hostile requests until the end of the soak.
    void attack(const char *channel)
    {
        HostileRequests requests(static_cast<unsigned>(std::strlen(channel)));
        while (!isOver) {
            (void)Placesd::exchange(requests.next(), channel);
            ++score.hostile;
            std::this_thread::sleep_for(5ms);
        }
    }

    /// Clients that send nothing or parts of requests, exceed limits, or do not read replies.
    void stallClients()
    {
        stalled.clear();
        for (const char *channel : {"places", "places.external"}) {
            for (int i = 0; i < 4; ++i)
                stalled.push_back(crowd::connectMany(*service, channel, 20));
            const auto last = stalled.end();
            crowd::send(last[-1], crowd::everything());
            crowd::send(last[-2], crowd::everything(), 50);
            crowd::send(last[-3], std::string(5 * 1024 * 1024, 'x'), 100000);
        }
    }

    void stallService()
    {
        ++score.stalls;
        service->pause();
        rest();
        service->resume();
    }

    /// Prevents all files of the service from growing, for a while.
    void fillDisk()
    {
        ++score.fullDisks;
        score.fullDisk.begin();
        // SQLite overwrites a long log from the start, so only a limit below the size of the log has an effect.
        const qint64 size =
            std::min(QFileInfo(service->path("places.db")).size(), QFileInfo(service->path("places.db-wal")).size());
        limitFiles(static_cast<rlim_t>((random() % 2 == 0 ? size : 0) + LEFT_ON_DISK));
        rest();
        // Sometimes kills the service on the full disk.
        if (random() % 3 == 0)
            kill();
        limitFiles(RLIM_INFINITY);
        score.fullDisk.end();
    }

    void kill()
    {
        ++score.kills;
        score.outage.begin();
        service->kill();
        service->start();
        score.outage.end();
    }

    /// Lets all clients work for 0.5 to 1.5 seconds.
    void rest() { std::this_thread::sleep_for(milliseconds(500 + random() % 1000)); }

    void limitFiles(rlim_t size)
    {
        const rlimit limit = {size, RLIM_INFINITY};
        EXPECT_EQ(::prlimit(service->pid(), RLIMIT_FSIZE, &limit, nullptr), 0);
    }

    bool isDatabaseWhole() const
    {
        const std::vector<std::string> problems = placesd::checkDatabase(service->path("places.db").toStdString());
        for (const std::string &problem : problems)
            std::fprintf(stderr, "%s\n", problem.c_str());
        return problems.empty();
    }

    std::optional<Placesd> service{std::in_place};
    Score score;
    std::mt19937 random{20261125};
    std::atomic<bool> isOver{false};
    std::deque<HonestClient> honest;
    std::vector<crowd::Clients> stalled;
    std::vector<std::thread> threads;
};

} // namespace

TEST_F(SoakTest, NothingAcknowledgedIsLostAndNoAnswerIsWrong)
{
    const seconds time(qEnvironmentVariableIntValue("PLACES_SOAK_SECONDS"));
    const auto deadline = steady_clock::now() + std::max(time, SHORT_SOAK);
    start();
    for (auto report = steady_clock::now() + 1min; steady_clock::now() < deadline;) {
        stallClients();
        rest();
        stallService();
        fillDisk();
        rest();
        kill();
        if (steady_clock::now() > report) {
            report += 1min;
            score.print();
        }
    }
    end();
    for (HonestClient &client : honest)
        client.checkAll();
    service->stop();
    const bool isWhole = isDatabaseWhole();
    service.reset(); // its log comes before the result
    score.print();
    std::printf("the database is %s\n", isWhole ? "whole" : "damaged");

    EXPECT_TRUE(isWhole);
    EXPECT_EQ(score.lost, 0U);
    EXPECT_EQ(score.wrong, 0U);
    EXPECT_GT(score.acknowledged, 100U);
    EXPECT_GT(score.refused, 0U) << "the disk was never full";
}
