// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "manager/PlaceStoreWatcherPrivate.h"

#include "protocol/ProtocolTypes.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>

#include <array>
#include <chrono>
#include <climits>
#include <dataversion.h>

// Weak: a platform without data versions lacks these functions.
#pragma weak dataversion_get
#pragma weak dataversion_path

namespace vela::platform::places
{

using orix_places_protocol::ProtocolNames;

namespace
{

constexpr std::chrono::milliseconds PAUSE(200);

QString versionPath()
{
    std::array<char, PATH_MAX> path = {};
    const bool isThere =
        dataversion_path && dataversion_path(ProtocolNames::internal, path.data(), static_cast<int>(path.size())) == 0;
    return isThere ? QFileInfo(QFile::decodeName(path.data())).absoluteFilePath() : QString();
}

QString folderOf(const QString &path)
{
    return QFileInfo(path).absolutePath();
}

} // namespace

PlaceStoreWatcherPrivate::PlaceStoreWatcherPrivate(QObject *parent)
    : QObject(parent)
    , m_path(versionPath())
    , m_files(this)
    , m_pause(this)
{
    m_pause.setSingleShot(true);
    m_pause.setInterval(PAUSE);
    connect(&m_pause, &QTimer::timeout, this, &PlaceStoreWatcherPrivate::check);
    // Queued, because a slot of changed() may destroy this object, which the file system watcher does not allow.
    for (const auto signal : {&QFileSystemWatcher::fileChanged, &QFileSystemWatcher::directoryChanged})
        connect(&m_files, signal, this, &PlaceStoreWatcherPrivate::onChanged, Qt::QueuedConnection);
    watch();
    m_version = dataVersion();
}

qint64 PlaceStoreWatcherPrivate::dataVersion()
{
    return dataversion_get ? dataversion_get(ProtocolNames::internal) : 0;
}

bool PlaceStoreWatcherPrivate::isWatched(const QString &path) const
{
    return m_files.files().contains(path) || m_files.directories().contains(path);
}

void PlaceStoreWatcherPrivate::watch()
{
    if (m_path.isEmpty())
        return;
    // A file that is created before its folder is watched is found on the next iteration.
    while (!isWatched(m_path) && !m_files.addPath(m_path)) {
        QString folder = folderOf(m_path);
        while (!QFileInfo::exists(folder))
            folder = folderOf(folder);
        if (isWatched(folder) || !m_files.addPath(folder))
            return;
    }
    if (const QStringList folders = m_files.directories(); !folders.isEmpty())
        m_files.removePaths(folders);
}

void PlaceStoreWatcherPrivate::onChanged()
{
    watch();
    check();
}

void PlaceStoreWatcherPrivate::check()
{
    const qint64 version = m_pause.isActive() ? m_version : dataVersion();
    if (version == m_version)
        return;
    m_version = version;
    m_pause.start();
    if (version != 0)
        Q_EMIT changed(version);
}

} // namespace vela::platform::places
