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

/// The reply to one AuxiliaryDataRequest, created by the library. Copies share their data.
class PLACES_EXPORT AuxiliaryDataReply
{
public:
    AuxiliaryDataReply();
    AuxiliaryDataReply(const AuxiliaryDataReply &other);
    /// Moves the value; `other` becomes a reply to no request.
    AuxiliaryDataReply(AuxiliaryDataReply &&other) noexcept;
    AuxiliaryDataReply &operator=(const AuxiliaryDataReply &other);
    AuxiliaryDataReply &operator=(AuxiliaryDataReply &&other) noexcept;
    virtual ~AuxiliaryDataReply();

    /// Swaps the values without a copy.
    void swap(AuxiliaryDataReply &other) noexcept { d.swap(other.d); }
    friend void swap(AuxiliaryDataReply &left, AuxiliaryDataReply &right) noexcept { left.swap(right); }

    /// Outcome of the request.
    [[nodiscard]] Error::Type status() const;
    /// Why the request failed, like Error::reason(); empty on success and when no reason is known.
    [[nodiscard]] QString reason() const;
    /// The found records; empty when the request failed.
    [[nodiscard]] QList<AuxiliaryData> data() const;
    /// The place of the request, kept alive by the reply.
    [[nodiscard]] QSharedPointer<AbstractPlace> place() const;
    /// The user-defined value of the request.
    [[nodiscard]] QVariant userDefinedValue() const;

private:
    friend class AuxiliaryDataReplyData;
    SharedValuePointer<AuxiliaryDataReplyData> d;
};

/// Compares all values except the reason; the place by identity, not by content.
PLACES_EXPORT bool operator==(const AuxiliaryDataReply &left, const AuxiliaryDataReply &right);
PLACES_EXPORT bool operator!=(const AuxiliaryDataReply &left, const AuxiliaryDataReply &right);

/// For debugging: status, reason, place and records.
PLACES_EXPORT QDebug operator<<(QDebug debug, const AuxiliaryDataReply &reply);

} // namespace vela::platform::places

Q_DECLARE_TYPEINFO(vela::platform::places::AuxiliaryDataReply, Q_MOVABLE_TYPE);
Q_DECLARE_METATYPE(vela::platform::places::AuxiliaryDataReply)
