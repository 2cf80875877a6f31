// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/Global.h>

#include <QtCore/QObject>

#include <memory>

namespace vela::platform::places
{

class PlaceStoreWatcherPrivate;

/// Tells when what the places service stores has changed, by whatever program, so that an application can ask again for
/// what it shows. It says that something has changed, not what.
///
/// A watcher belongs to the thread it lives in, which needs an event loop. It has no thread, asks the service nothing
/// and costs nothing while nothing changes. It may be destroyed by a slot of its signal. Where the service or the
/// platform has no data versions, it never emits anything.
class PLACES_EXPORT PlaceStoreWatcher : public QObject
{
    Q_OBJECT
public:
    /// Watches from now on, also when no service is running yet.
    explicit PlaceStoreWatcher(QObject *parent = nullptr);
    ~PlaceStoreWatcher() override;

    /// The data version of the service: a number that grows with each change and each start of the service, and says
    /// nothing else; 0 when it is not known. Read it before the places that are shown: as long as it is the same, so
    /// are they. It may also grow when nothing that the caller may see has changed. Reads a few bytes and never waits
    /// for the service. Safe on any thread.
    [[nodiscard]] static qint64 dataVersion();

Q_SIGNALS:
    /// The data version is no longer the one that was emitted last. What this application itself changes counts, too.
    /// Changes that follow each other at less than 200 milliseconds are told together.
    /// @param version the new one.
    void changed(qint64 version);

private:
    const std::unique_ptr<PlaceStoreWatcherPrivate> d;
};

} // namespace vela::platform::places
