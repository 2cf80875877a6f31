// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "places/Provider.h"

#include "model/DebugParts.h"
#include "model/ProviderData.h"

#include <QtCore/QHash>

namespace vela::platform::places
{

Provider::Provider()
    : d(new ProviderData)
{}

Provider::Provider(const Provider &other) = default;
Provider::Provider(Provider &&other) noexcept = default;
Provider &Provider::operator=(const Provider &other) = default;
Provider &Provider::operator=(Provider &&other) noexcept = default;
Provider::~Provider() = default;

QString Provider::name() const
{
    return d->name;
}

QUrl Provider::url() const
{
    return d->url;
}

bool Provider::canRequestAdditionalData() const
{
    return d->canRequestAdditionalData;
}

QStringList Provider::supportedDataTypes() const
{
    return d->supportedDataTypes;
}

bool Provider::isValid() const
{
    return !d->name.isEmpty();
}

bool operator==(const Provider &left, const Provider &right)
{
    return left.name() == right.name() && left.url() == right.url();
}

bool operator!=(const Provider &left, const Provider &right)
{
    return !(left == right);
}

unsigned int qHash(const Provider &provider)
{
    const auto hash = [](const QString &text) { return static_cast<unsigned int>(::qHash(text)); };
    return (hash(provider.name()) + 119U) * 17U + hash(provider.url().toString());
}

QDebug operator<<(QDebug debug, const Provider &provider)
{
    DebugParts(debug, "Provider")
        .addIf(provider.isValid(), provider.name())
        .addIf(!provider.url().isEmpty(), provider.url().toDisplayString());
    return debug;
}

} // namespace vela::platform::places
