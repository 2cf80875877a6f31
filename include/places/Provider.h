// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/Global.h>

#include <QtCore/QExplicitlySharedDataPointer>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QUrl>

namespace vela::platform::places
{

class ProviderData;

/// A source of places or of auxiliary data. Providers are made by the library; all copies of one share its data.
class PLACES_EXPORT Provider
{
public:
    /// No provider: not valid.
    Provider();
    Provider(const Provider &other);
    Provider &operator=(const Provider &other);
    virtual ~Provider();

    /// Name that identifies the provider; empty for no provider.
    [[nodiscard]] QString name() const;
    /// Web address of the provider; empty when it has none.
    [[nodiscard]] QUrl url() const;
    /// True when the provider can be asked for more auxiliary data of a place.
    [[nodiscard]] bool canRequestAdditionalData() const;
    /// Types of auxiliary data that can be asked for; empty when there are none.
    [[nodiscard]] QStringList supportedDataTypes() const;
    /// True when the provider has a name.
    [[nodiscard]] bool isValid() const;

private:
    friend class ProviderData;
    QExplicitlySharedDataPointer<ProviderData> d;
};

/// Compares name and URL: the provider is the same whatever it can be asked for.
PLACES_EXPORT bool operator==(const Provider &left, const Provider &right);
PLACES_EXPORT bool operator!=(const Provider &left, const Provider &right);
/// Agrees with operator==.
PLACES_EXPORT unsigned int qHash(const Provider &provider);

} // namespace vela::platform::places
