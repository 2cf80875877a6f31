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

/// A request for auxiliary data of one place. Copies share their data until one is changed.
class PLACES_EXPORT AuxiliaryDataRequest
{
public:
    AuxiliaryDataRequest();
    AuxiliaryDataRequest(const AuxiliaryDataRequest &other);
    /// Moves the value; `other` becomes a request without a place.
    AuxiliaryDataRequest(AuxiliaryDataRequest &&other) noexcept;
    AuxiliaryDataRequest &operator=(const AuxiliaryDataRequest &other);
    AuxiliaryDataRequest &operator=(AuxiliaryDataRequest &&other) noexcept;
    virtual ~AuxiliaryDataRequest();

    /// Swaps the values without a copy.
    void swap(AuxiliaryDataRequest &other) noexcept { d.swap(other.d); }
    friend void swap(AuxiliaryDataRequest &left, AuxiliaryDataRequest &right) noexcept { left.swap(right); }

    /// The place; null when unset.
    [[nodiscard]] QSharedPointer<AbstractPlace> place() const;
    void setPlace(const QSharedPointer<AbstractPlace> &place);

    /// Type of the requested records, such as AuxiliaryData::TypeContact; empty for all types.
    [[nodiscard]] QString dataType() const;
    void setDataType(const QString &type);

    /// True for records from providers only; false by default.
    [[nodiscard]] bool isRemoteDataOnly() const;
    void setRemoteDataOnly(bool remoteDataOnly);

    /// Only records of this provider; not valid for all providers.
    [[nodiscard]] Provider provider() const;
    void setProvider(const Provider &provider);

    /// Index of the first requested record, from 0.
    [[nodiscard]] int offset() const;
    void setOffset(int offset);

    /// Maximum number of records; -1 for no limit.
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
