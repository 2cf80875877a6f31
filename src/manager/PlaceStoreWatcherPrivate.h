// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QFileSystemWatcher>
#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QTimer>

namespace vela::platform::places
{

class PlaceStoreWatcherPrivate : public QObject
{
    Q_OBJECT
public:
    explicit PlaceStoreWatcherPrivate(QObject *parent);

    static qint64 dataVersion();

Q_SIGNALS:
    void changed(qint64 version);

private:
    /// Watches the file or, where there is none, the folder in which it or a folder above it will appear.
    void watch();
    [[nodiscard]] bool isWatched(const QString &path) const;
    void onChanged();
    /// Emits changed() if there is a new version, unless one was emitted a moment ago.
    void check();

    const QString m_path; ///< Of the file with the version; empty where the platform has none.
    QFileSystemWatcher m_files;
    QTimer m_pause; ///< Runs from one changed() to the earliest next one.
    qint64 m_version = 0;
};

} // namespace vela::platform::places
