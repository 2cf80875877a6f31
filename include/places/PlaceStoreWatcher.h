// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/Global.h>

#include <QtCore/QObject>

#include <memory>

namespace vela::platform::places
{

class PlaceStoreWatcherPrivate;

/// Notifies when any program changes the places of the service, so that an application can refresh its display. It does
/// not report what changed.
///
/// The watcher's thread needs an event loop. The watcher has no thread of its own, sends no requests and needs no CPU
/// time without changes. A slot of its signal may destroy it. Without data versions in the service or platform it never
/// emits a signal.
class PLACES_EXPORT PlaceStoreWatcher : public QObject
{
    Q_OBJECT
public:
    /// Starts watching, also before a service is running.
    explicit PlaceStoreWatcher(QObject *parent = nullptr);
    ~PlaceStoreWatcher() override;

    /// The data version of the service: a number that grows with each change and each start of the service; 0 when it
    /// is unknown. Read it before you fetch places: while it is the same, they are unchanged. It may also grow without
    /// a change visible to the caller. Reads a small file and does not wait for the service. Thread-safe.
    [[nodiscard]] static qint64 dataVersion();

Q_SIGNALS:
    /// The data version differs from the last emitted one. Changes of this application count too. Changes within 200
    /// milliseconds are reported together.
    /// @param version the new data version.
    void changed(qint64 version);

private:
    const std::unique_ptr<PlaceStoreWatcherPrivate> d;
};

} // namespace vela::platform::places
