// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "places/Place.h"
#include "store/Check.h"
#include "store/Store.h"
#include "support/Files.h"
#include "support/SamplePlace.h"

#include <gtest/gtest.h>

#include <QtCore/QTemporaryDir>

#include <sqlite3.h>

using files::bytesOf;
using files::write;
using namespace vela::platform::places;
using placesd::Store;
using placesd::StoreShared;

namespace
{

/// Sizes of the header of a write-ahead log and of a frame with its page.
constexpr int HEADER = 32;
constexpr int FRAME = 24 + 4096;

qint64 syncedLength = 0; ///< Of the write-ahead log.
const sqlite3_io_methods *realMethods = nullptr;

int noteSync(sqlite3_file *file, int flags)
{
    const int result = realMethods->xSync(file, flags);
    sqlite3_int64 size = 0;
    realMethods->xFileSize(file, &size);
    syncedLength = size;
    return result;
}

/// The default file system of SQLite. It records how much of a write-ahead log is on the disk.
class WatchedFiles
{
public:
    WatchedFiles()
    {
        m_real = sqlite3_vfs_find(nullptr);
        m_watched = *m_real;
        m_watched.zName = "watched";
        m_watched.xOpen = open;
        sqlite3_vfs_register(&m_watched, 1);
    }
    ~WatchedFiles()
    {
        sqlite3_vfs_unregister(&m_watched);
        sqlite3_vfs_register(m_real, 1);
    }

private:
    static int open(sqlite3_vfs *, const char *name, sqlite3_file *file, int flags, int *outFlags)
    {
        static sqlite3_io_methods watching;
        const int result = m_real->xOpen(m_real, name, file, flags, outFlags);
        if (result == SQLITE_OK && (flags & SQLITE_OPEN_WAL) != 0) {
            realMethods = file->pMethods;
            watching = *realMethods;
            watching.xSync = noteSync;
            file->pMethods = &watching;
        }
        return result;
    }

    static inline sqlite3_vfs *m_real = nullptr;
    sqlite3_vfs m_watched = {};
};

} // namespace

TEST(Store, KeepsAcknowledgedWritesAfterAPowerLoss)
{
    const WatchedFiles watched;
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("places.db"));
    StoreShared shared;
    Store(path.toStdString(), shared).write([] { return true; });
    // The log is empty now and contains only the changes below.
    Store store(path.toStdString(), shared);
    std::vector<qint64> acknowledgedAt;
    for (int i = 0; i < 3; ++i) {
        sample::FullPlace place(-1);
        ASSERT_TRUE(store.write([&] { return store.insert(place), true; }));
        acknowledgedAt.push_back(syncedLength);
    }
    const QByteArray database = bytesOf(path);
    const QByteArray log = bytesOf(path + QStringLiteral("-wal"));
    const auto frames = (log.size() - HEADER) / FRAME;
    ASSERT_GT(frames, 20);

    const QString torn = folder.filePath(QStringLiteral("torn.db"));
    const auto expectAllThatReached = [&](const QByteArray &rest, qint64 whole) {
        write(torn, database);
        write(torn + QStringLiteral("-wal"), rest);
        EXPECT_EQ(placesd::checkDatabase(torn.toStdString()), std::vector<std::string>()) << whole;
        StoreShared unshared;
        Store opened(torn.toStdString(), unshared);
        for (std::size_t i = 0; i < acknowledgedAt.size(); ++i) {
            const bool isThere = opened.place(static_cast<qint64>(i) + 1) != nullptr;
            EXPECT_EQ(isThere, acknowledgedAt[i] <= whole) << whole << " bytes, place " << i + 1;
        }
    };
    for (int frame = 0; frame <= frames; ++frame) {
        const int end = HEADER + frame * FRAME;
        expectAllThatReached(log.left(end), end);
        if (frame == frames)
            break;
        expectAllThatReached(log.left(end + FRAME / 2), end);
        // One sector in the middle did not reach the disk, but all later ones did.
        QByteArray holed = log;
        holed.replace(end + 1024, 512, QByteArray(512, '\x55'));
        expectAllThatReached(holed, end);
    }
}
