// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/AuxiliaryData.h>
#include <places/Error.h>
#include <places/Global.h>

#include <QtCore/QList>
#include <QtCore/QSharedPointer>
#include <QtCore/QString>
#include <QtCore/QVariant>

namespace vela::platform::places
{

class AbstractPlace;
class AuxiliaryDataReplyData;

/// The answer to one AuxiliaryDataRequest. Replies are made by the library; copies share their data.
class PLACES_EXPORT AuxiliaryDataReply
{
public:
    AuxiliaryDataReply();
    AuxiliaryDataReply(const AuxiliaryDataReply &other);
    /// Takes the value of `other`, which is a reply to no request from then on.
    AuxiliaryDataReply(AuxiliaryDataReply &&other) noexcept;
    AuxiliaryDataReply &operator=(const AuxiliaryDataReply &other);
    AuxiliaryDataReply &operator=(AuxiliaryDataReply &&other) noexcept;
    virtual ~AuxiliaryDataReply();

    /// Exchanges the values without a copy.
    void swap(AuxiliaryDataReply &other) noexcept { d.swap(other.d); }
    friend void swap(AuxiliaryDataReply &left, AuxiliaryDataReply &right) noexcept { left.swap(right); }

    /// Outcome of the request.
    [[nodiscard]] Error::Type status() const;
    /// Why the request failed, as Error::reason() would say it; empty when it did not, or when no reason is known.
    [[nodiscard]] QString reason() const;
    /// The records that were found; empty when the request failed.
    [[nodiscard]] QList<AuxiliaryData> data() const;
    /// The place of the request; the reply keeps it alive.
    [[nodiscard]] QSharedPointer<AbstractPlace> place() const;
    /// The caller's own value, from the request.
    [[nodiscard]] QVariant userDefinedValue() const;

private:
    friend class AuxiliaryDataReplyData;
    SharedValuePointer<AuxiliaryDataReplyData> d;
};

/// Compares all values but the reason; the place by identity, not by content.
PLACES_EXPORT bool operator==(const AuxiliaryDataReply &left, const AuxiliaryDataReply &right);
PLACES_EXPORT bool operator!=(const AuxiliaryDataReply &left, const AuxiliaryDataReply &right);

/// For debugging: status, reason, place and records.
PLACES_EXPORT QDebug operator<<(QDebug debug, const AuxiliaryDataReply &reply);

} // namespace vela::platform::places

Q_DECLARE_TYPEINFO(vela::platform::places::AuxiliaryDataReply, Q_MOVABLE_TYPE);
Q_DECLARE_METATYPE(vela::platform::places::AuxiliaryDataReply)
