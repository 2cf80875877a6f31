// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/Global.h>
#include <places/Provider.h>

#include <QtCore/QSharedPointer>
#include <QtCore/QString>
#include <QtCore/QVariant>

namespace vela::platform::places
{

class AbstractPlace;
class AuxiliaryDataRequestData;

/// Asks for auxiliary data of one place. Copies share their data until one is changed.
class PLACES_EXPORT AuxiliaryDataRequest
{
public:
    AuxiliaryDataRequest();
    AuxiliaryDataRequest(const AuxiliaryDataRequest &other);
    /// Takes the value of `other`, which is a request without a place from then on.
    AuxiliaryDataRequest(AuxiliaryDataRequest &&other) noexcept;
    AuxiliaryDataRequest &operator=(const AuxiliaryDataRequest &other);
    AuxiliaryDataRequest &operator=(AuxiliaryDataRequest &&other) noexcept;
    virtual ~AuxiliaryDataRequest();

    /// Exchanges the values without a copy.
    void swap(AuxiliaryDataRequest &other) noexcept { d.swap(other.d); }
    friend void swap(AuxiliaryDataRequest &left, AuxiliaryDataRequest &right) noexcept { left.swap(right); }

    /// The place whose data is wanted; null when unset.
    [[nodiscard]] QSharedPointer<AbstractPlace> place() const;
    void setPlace(const QSharedPointer<AbstractPlace> &place);

    /// The type of record that is wanted, such as AuxiliaryData::TypeContact; empty for every type.
    [[nodiscard]] QString dataType() const;
    void setDataType(const QString &type);

    /// True to get only what a provider has to be asked for; false by default.
    [[nodiscard]] bool isRemoteDataOnly() const;
    void setRemoteDataOnly(bool remoteDataOnly);

    /// The only provider to take data from; not valid for all of them.
    [[nodiscard]] Provider provider() const;
    void setProvider(const Provider &provider);

    /// Index of the first record that is wanted, from 0.
    [[nodiscard]] int offset() const;
    void setOffset(int offset);

    /// Largest number of records that is wanted; -1 for no limit.
    [[nodiscard]] int limit() const;
    void setLimit(int limit);

    /// A value of the caller's own that comes back with the reply; invalid when unset.
    [[nodiscard]] QVariant userDefinedValue() const;
    void setUserDefinedValue(const QVariant &value);

    /// True when a place is set.
    [[nodiscard]] bool isValid() const;

private:
    friend class AuxiliaryDataRequestData;
    SharedValuePointer<AuxiliaryDataRequestData> d;
};

/// Compares all values; the place by identity, not by content.
PLACES_EXPORT bool operator==(const AuxiliaryDataRequest &left, const AuxiliaryDataRequest &right);
PLACES_EXPORT bool operator!=(const AuxiliaryDataRequest &left, const AuxiliaryDataRequest &right);

/// For debugging: place, type and what else is set.
PLACES_EXPORT QDebug operator<<(QDebug debug, const AuxiliaryDataRequest &request);

} // namespace vela::platform::places

Q_DECLARE_TYPEINFO(vela::platform::places::AuxiliaryDataRequest, Q_MOVABLE_TYPE);
Q_DECLARE_METATYPE(vela::platform::places::AuxiliaryDataRequest)
