// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "places/PlaceStoreWatcher.h"

#include "manager/PlaceStoreWatcherPrivate.h"

namespace vela::platform::places
{

PlaceStoreWatcher::PlaceStoreWatcher(QObject *parent)
    : QObject(parent)
    , d(std::make_unique<PlaceStoreWatcherPrivate>(this))
{
    connect(d.get(), &PlaceStoreWatcherPrivate::changed, this, &PlaceStoreWatcher::changed);
}

PlaceStoreWatcher::~PlaceStoreWatcher() = default;

qint64 PlaceStoreWatcher::dataVersion()
{
    return PlaceStoreWatcherPrivate::dataVersion();
}

} // namespace vela::platform::places
