// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "StoreMaker.h"

#include "PlaceMaker.h"
#include "places/Place.h"
#include "store/Store.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QTemporaryDir>

#include <algorithm>
#include <iostream>

namespace bench
{

namespace
{

/// Number of places per write.
constexpr int BATCH = 10000;

/// The schema version of a new database.
int schemaVersion()
{
    const QTemporaryDir folder;
    const std::string path = folder.filePath(QStringLiteral("empty.db")).toStdString();
    placesd::StoreShared shared;
    const placesd::Store store(path, shared);
    return SQLite::Database(path).execAndGet("PRAGMA user_version").getInt();
}

void fill(const QString &path, int places)
{
    placesd::StoreShared shared;
    placesd::Store store(path.toStdString(), shared);
    PlaceMaker maker;
    for (int done = 0; done < places; done += BATCH) {
        store.write([&] {
            for (int i = done; i < std::min(done + BATCH, places); ++i)
                store.insert(*maker.next().place);
            return true;
        });
        std::cerr << "\rmaking a store of " << places << " places: " << std::min(done + BATCH, places) << std::flush;
    }
    std::cerr << "\n";
}

} // namespace

MadeStore makeStore(const QString &folder, int places)
{
    const QString path =
        folder
        + QStringLiteral("/places-%1-schema%2-maker%3.db").arg(places).arg(schemaVersion()).arg(PlaceMaker::VERSION);
    QFile time(path + QStringLiteral(".seconds"));
    if (!QFile::exists(path) || !time.exists()) {
        const QString unfinished = path + QStringLiteral(".new");
        for (const char *part : {"", "-wal", "-shm"})
            QFile::remove(unfinished + QLatin1String(part));
        QElapsedTimer timer;
        timer.start();
        // Closing the last connection copies the write-ahead log into the database.
        fill(unfinished, places);
        time.open(QIODevice::WriteOnly);
        time.write(QByteArray::number(static_cast<double>(timer.elapsed()) / 1000));
        time.close();
        QFile::rename(unfinished, path);
    }
    time.open(QIODevice::ReadOnly);
    return {path, places, time.readAll().toDouble(), static_cast<double>(QFileInfo(path).size()) / places};
}

} // namespace bench
