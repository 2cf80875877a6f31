// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "places/PlaceSearchManager.h"

#include "search/PlaceSearchManagerPrivate.h"

namespace vela::platform::places
{

PlaceSearchManager::PlaceSearchManager(QObject *parent)
    : QObject(parent)
    , d(std::make_unique<PlaceSearchManagerPrivate>(this))
{
    qRegisterMetaType<AuxiliaryDataRequest>("vela::platform::places::AuxiliaryDataRequest");
    qRegisterMetaType<AuxiliaryDataReply>("vela::platform::places::AuxiliaryDataReply");
    qRegisterMetaType<QList<AuxiliaryDataReply>>("QList<vela::platform::places::AuxiliaryDataReply>");
    const auto forward = [this, sender = d.get()](const QList<AuxiliaryDataReply> &replies, const QVariant &tag,
                                                  bool last) {
        if (sender->arrived())
            Q_EMIT auxiliaryDataAvailable(replies, tag, last);
    };
    connect(d.get(), &PlaceSearchManagerPrivate::auxiliaryDataAvailable, this, forward, Qt::QueuedConnection);
}

PlaceSearchManager::~PlaceSearchManager() = default;

int PlaceSearchManager::requestAuxiliaryData(const QList<AuxiliaryDataRequest> &requests, const QVariant &tag)
{
    return d->requestAuxiliaryData(requests, tag);
}

void PlaceSearchManager::cancel(const QVariant &tag)
{
    d->cancel(tag);
}

QList<Provider> PlaceSearchManager::getSupportedProviders()
{
    return PlaceSearchManagerPrivate::getSupportedProviders();
}

QList<Provider> PlaceSearchManager::findProviders(const QString &dataType)
{
    const QList<Provider> providers = getSupportedProviders();
    QList<Provider> found;
    for (const Provider &provider : providers) {
        if (provider.canRequestAdditionalData() && provider.supportedDataTypes().contains(dataType))
            found.append(provider);
    }
    return found;
}

} // namespace vela::platform::places
