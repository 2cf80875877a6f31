// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "places/Provider.h"

#include <QtCore/QSharedData>

namespace vela::platform::places
{

class ProviderData : public QSharedData
{
public:
    /// Writable data of a provider, shared with its copies.
    static ProviderData *fromPublic(Provider &provider) { return provider.d.get(); }
    static const ProviderData *fromPublic(const Provider &provider) { return provider.d.get(); }

    QString name;
    QUrl url;
    bool canRequestAdditionalData = false;
    QStringList supportedDataTypes;
};

} // namespace vela::platform::places
