// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "store/DataVersion.h"
#include "Channel.h"
#include "places/InternalPlaceManager.h"
#include "places/PlaceStoreWatcher.h"
#include "support/Client.h"
#include "support/EventLoop.h"
#include "support/Placesd.h"
#include "support/Requests.h"

#include <gmock/gmock.h>

#include <QtTest/QSignalSpy>

#include <sys/stat.h>

using namespace vela::platform::places;
using vela::system::channel::versionPath;

namespace
{

/// A client that watches the store, and its notifications.
class DataVersion : public testing::Test
{
protected:
    /// Runs a change and waits for its notification.
    bool tellsOf(const std::function<void()> &change)
    {
        const qint64 before = PlaceStoreWatcher::dataVersion();
        change();
        const qint64 version = PlaceStoreWatcher::dataVersion();
        EXPECT_GT(version, before);
        return EventLoop::runUntil([&] { return !changes.isEmpty() && changes.last()[0].toLongLong() == version; });
    }

    EventLoop loop;
    Placesd service;
    PlaceStoreWatcher watcher;
    QSignalSpy changes{&watcher, &PlaceStoreWatcher::changed};
};

} // namespace

TEST_F(DataVersion, ReportsEveryChangeByAnotherClient)
{
    const char *const commands[] = {"add Zurichsee --at 47.25,8.7", "tag 1 lake", "use 1", "fav 1", "remove 1"};
    for (const char *command : commands)
        ASSERT_TRUE(tellsOf([&] { EXPECT_EQ(places(command).status, 0); })) << command;
    const std::string backup = service.path("backup.db").toStdString();
    EXPECT_EQ(InternalPlaceManager().backup(QString::fromStdString(backup)), Error::Success);
    EXPECT_TRUE(
        tellsOf([&] { EXPECT_EQ(InternalPlaceManager().restore(QString::fromStdString(backup)), Error::Success); }));

    const qint64 version = PlaceStoreWatcher::dataVersion();
    for (const char *command : {"find zur", "show 1", "remove 99", "tags"})
        places(command);
    EXPECT_EQ(PlaceStoreWatcher::dataVersion(), version) << "no command changed anything";
}

TEST_F(DataVersion, ReportsARestartAndABurstOfChanges)
{
    ASSERT_TRUE(tellsOf([&] {
        service.kill();
        service.start();
    }));
    ASSERT_TRUE(tellsOf([&] {
        service.stop();
        service.start();
    }));
    changes.clear();
    constexpr int CHANGES = 200;
    const std::string tag = requests::withId(requests::Type::AddTag, 1, {wire::text("lake")});
    places("add Zurichsee --at 47.25,8.7");
    ASSERT_TRUE(tellsOf([&] {
        for (int i = 0; i < CHANGES; ++i) {
            EXPECT_EQ(Placesd::code(tag), 0);
            QCoreApplication::processEvents();
        }
    }));
    EXPECT_LT(changes.size(), CHANGES / 4);
}

TEST_F(DataVersion, RevealsOnlyANumberAndIsReadOnlyForOthers)
{
    EXPECT_EQ(places("add Hideout --at 47.25,8.7").status, 0);
    struct stat status = {};
    ASSERT_EQ(::stat(versionPath("places").c_str(), &status), 0);
    EXPECT_EQ(status.st_size, 8) << "a number";
    EXPECT_EQ(status.st_mode & 0777U, 0644U) << "independent of the umask of the service";
}

TEST(PlaceStoreWatcher, WaitsForAMissingFolderAndIgnoresFilesOfOtherUsers)
{
    const EventLoop loop;
    const QTemporaryDir root;
    const QString folder = root.filePath(QStringLiteral("run/vela"));
    qputenv("VELA_CHANNEL_DIR", folder.toLocal8Bit());
    const PlaceStoreWatcher watcher;
    QSignalSpy changes(&watcher, &PlaceStoreWatcher::changed);
    auto shortLived = std::make_unique<PlaceStoreWatcher>();
    QObject::connect(shortLived.get(), &PlaceStoreWatcher::changed, [&] { shortLived.reset(); });
    EXPECT_EQ(PlaceStoreWatcher::dataVersion(), 0);
    ASSERT_TRUE(QDir().mkpath(folder));
    ::chmod(folder.toLocal8Bit().constData(), 0755);
    EventLoop::runOut();
    placesd::DataVersion version(versionPath("places"));
    EXPECT_TRUE(EventLoop::runUntil([&] { return changes.size() == 1 && !shortLived; }));
    version.advance();
    EXPECT_TRUE(EventLoop::runUntil([&] { return changes.size() == 2; }));

    ::chmod(folder.toLocal8Bit().constData(), 0777);
    EXPECT_EQ(PlaceStoreWatcher::dataVersion(), 0);
    ::chmod(folder.toLocal8Bit().constData(), 0755);
    EXPECT_GT(PlaceStoreWatcher::dataVersion(), 0);
    const std::string path = versionPath("places");
    const std::function<int()> others[] = {
        [&] { return ::truncate(path.c_str(), 4); },
        [&] { return ::unlink(path.c_str()) + ::mkfifo(path.c_str(), 0644); },
        [&] { return ::unlink(path.c_str()) + ::symlink("/proc/self/exe", path.c_str()); },
    };
    for (const auto &other : others) {
        ASSERT_EQ(other(), 0);
        EXPECT_EQ(PlaceStoreWatcher::dataVersion(), 0);
    }
}
