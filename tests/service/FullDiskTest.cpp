// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "manager/PlaceManagerPrivate.h"
#include "places/PlaceManager.h"
#include "protocol/Protocol.h"
#include "support/Placesd.h"
#include "support/SamplePlace.h"

#include <gmock/gmock.h>

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QProcess>

#include <algorithm>
#include <random>

using namespace vela::platform::places;

namespace
{

/// A service whose database is on a small file system. It is mounted in a user namespace, so the test does not need
/// root.
class FullDiskTest : public testing::Test
{
protected:
    void SetUp() override
    {
        service.stop();
        ASSERT_TRUE(QDir().mkdir(service.path("disk")));
        for (const char *end : {"", "-reserve"})
            QFile::remove(service.path("places.db") + QLatin1String(end));
        ASSERT_TRUE(QFile::link(service.path("disk/places.db"), service.path("places.db")));
        disk.start(QStringLiteral("unshare"),
                   {QStringLiteral("--map-root-user"), QStringLiteral("--mount"), QStringLiteral("sh"),
                    QStringLiteral("-c"),
                    QStringLiteral("mount -t tmpfs -o size=14m tmpfs \"$0\" && echo mounted && exec sleep 600"),
                    service.path("disk")});
        if (!disk.waitForStarted() || !disk.waitForReadyRead())
            GTEST_SKIP() << "no user namespaces here";
    }
    void TearDown() override
    {
        if (service.isRunning())
            service.stop();
        disk.kill();
        disk.waitForFinished();
    }

    void start()
    {
        service.start({QStringLiteral("nsenter"), QStringLiteral("--preserve-credentials"), QStringLiteral("--user"),
                       QStringLiteral("--mount"), QStringLiteral("--target"), QString::number(disk.processId())});
    }
    /// A file on the disk.
    QString path(const char *name) const
    {
        return QStringLiteral("/proc/%1/root").arg(disk.processId()) + service.path("disk/") + QLatin1String(name);
    }
    /// Fills the rest of the disk.
    void fillUp()
    {
        QFile filler(path("filler"));
        ASSERT_TRUE(filler.open(QIODevice::Append | QIODevice::Unbuffered));
        while (filler.write(QByteArray(4096, 'x')) > 0) {
        }
    }
    /// Adds a place of some kilobytes that do not compress.
    Error::Type add(bool isRecent)
    {
        sample::FullPlace place(-1);
        place.data().m_tags.clear();
        QString text;
        for (int i = 0; i < 400; ++i)
            text += QString::number(random(), 36) + QLatin1String(i % 20 == 0 ? " " : "");
        place.setDescription(text);
        place.setName(text.left(20));
        const Error::Type error =
            isRecent ? PlaceManager().addRecentlyPickedPlace(&place) : PlaceManager().addPlace(&place);
        if (error == Error::Success)
            (isRecent ? recent : saved).push_back(place.id());
        return error;
    }
    qint64 count()
    {
        Error::Type error = Error::Unspecified;
        const auto found = static_cast<qint64>(Protocol().findPlacesSize(SearchRule(), &error, Coordinates()));
        EXPECT_EQ(error, Error::Success);
        return found;
    }

    std::mt19937 random{20261125};
    Placesd service;
    QProcess disk;
    std::vector<qint64> saved;
    std::vector<qint64> recent;
};

} // namespace

TEST_F(FullDiskTest, PlacesAreRemovedAndNothingIsLost)
{
    start();
    Error::Type error = Error::Success;
    for (int i = 0; error == Error::Success; ++i)
        error = add(i % 4 == 0);
    EXPECT_EQ(error, Error::StorageFailed);
    const auto saysWhere = [](Error::Type failure, const QString &file) {
        return Error::reason(failure).startsWith(file) && Error::reason(failure).contains(QLatin1String("make room"));
    };
    EXPECT_TRUE(saysWhere(error, service.path("places.db"))) << Error::reason(error).toStdString();
    fillUp();
    EXPECT_EQ(Protocol().backup(service.path("disk/copy.db").toStdString()), Error::BackupFailed);
    EXPECT_TRUE(saysWhere(Error::BackupFailed, service.path("disk/copy.db")))
        << Error::reason(Error::BackupFailed).toStdString();
    EXPECT_EQ(add(false), Error::StorageFailed);
    EXPECT_EQ(PlaceManager().addTag(saved[0], QStringLiteral("beach")), Error::StorageFailed);
    service.stop(); // removes SQLite's files beside the database
    fillUp();
    start();
    EXPECT_EQ(count(), static_cast<qint64>(saved.size() + recent.size())) << "every acknowledged place is stored";
    EXPECT_GT(saved.size(), 100U);

    EXPECT_EQ(PlaceManager().removePlace(saved.back()), Error::Success);
    saved.pop_back();
    service.kill();
    fillUp();
    start();
    EXPECT_EQ(PlaceManager().clearRecentlyPickedPlaces(), Error::Success);
    EXPECT_EQ(count(), static_cast<qint64>(saved.size()));
    // Removals and additions alternate: no addition may use the reserve for removals.
    std::shuffle(saved.begin(), saved.end(), random);
    while (!saved.empty()) {
        const qint64 id = saved.back();
        saved.pop_back();
        ASSERT_EQ(PlaceManager().removePlace(id), Error::Success) << saved.size();
        fillUp();
        if (saved.size() > 100)
            (void)add(false);
    }
    EXPECT_EQ(count(), 0);
    const std::string log = service.log();
    const std::string message = "the file system at " + service.path("disk").toStdString() + " is full";
    EXPECT_NE(log.find(message), std::string::npos);
    EXPECT_EQ(log.find("request"), std::string::npos) << "one message per minute";
}
