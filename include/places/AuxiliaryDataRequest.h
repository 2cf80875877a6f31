// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/Global.h>
#include <places/Provider.h>

#include <QtCore/QMetaType>
#include <QtCore/QSharedDataPointer>
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
    AuxiliaryDataRequest &operator=(const AuxiliaryDataRequest &other);
    virtual ~AuxiliaryDataRequest();

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
    QSharedDataPointer<AuxiliaryDataRequestData> d;
};

/// Compares all values; the place by identity, not by content.
PLACES_EXPORT bool operator==(const AuxiliaryDataRequest &left, const AuxiliaryDataRequest &right);
PLACES_EXPORT bool operator!=(const AuxiliaryDataRequest &left, const AuxiliaryDataRequest &right);

} // namespace vela::platform::places

Q_DECLARE_METATYPE(vela::platform::places::AuxiliaryDataRequest)
