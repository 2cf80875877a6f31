// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/Global.h>

#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QUrl>

namespace vela::platform::places
{

class ProviderData;

/// A source of places or of auxiliary data, created by the library; all copies share its data.
class PLACES_EXPORT Provider
{
public:
    /// No provider; not valid.
    Provider();
    Provider(const Provider &other);
    /// Moves the value; `other` becomes no provider.
    Provider(Provider &&other) noexcept;
    Provider &operator=(const Provider &other);
    Provider &operator=(Provider &&other) noexcept;
    virtual ~Provider();

    /// Swaps the values without a copy.
    void swap(Provider &other) noexcept { d.swap(other.d); }
    friend void swap(Provider &left, Provider &right) noexcept { left.swap(right); }

    /// Name that identifies the provider; empty for no provider.
    [[nodiscard]] QString name() const;
    /// Web address of the provider; empty when it has none.
    [[nodiscard]] QUrl url() const;
    /// True when the provider offers more auxiliary data of a place.
    [[nodiscard]] bool canRequestAdditionalData() const;
    /// Types of auxiliary data that the provider offers; empty when there are none.
    [[nodiscard]] QStringList supportedDataTypes() const;
    /// True when the provider has a name.
    [[nodiscard]] bool isValid() const;

private:
    friend class ProviderData;
    SharedValuePointer<ProviderData, QExplicitlySharedDataPointer<ProviderData>> d;
};

/// Compares name and URL, not capabilities.
PLACES_EXPORT bool operator==(const Provider &left, const Provider &right);
PLACES_EXPORT bool operator!=(const Provider &left, const Provider &right);
/// Consistent with operator==.
PLACES_EXPORT unsigned int qHash(const Provider &provider);

/// For debugging: name and web address, without a password in the address.
PLACES_EXPORT QDebug operator<<(QDebug debug, const Provider &provider);

} // namespace vela::platform::places

Q_DECLARE_TYPEINFO(vela::platform::places::Provider, Q_MOVABLE_TYPE);
Q_DECLARE_METATYPE(vela::platform::places::Provider)
