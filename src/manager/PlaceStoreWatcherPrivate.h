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
    /// Watches the file, or its nearest existing folder while it is missing.
    void watch();
    [[nodiscard]] bool isWatched(const QString &path) const;
    void onChanged();
    /// Emits changed() for a new version, unless one was emitted a moment ago.
    void check();

    const QString m_path; ///< Path of the version file; empty when the platform has none.
    QFileSystemWatcher m_files;
    QTimer m_pause; ///< Runs from one changed() to the earliest next one.
    qint64 m_version = 0;
};

} // namespace vela::platform::places
