// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "places/AuxiliaryDataReply.h"

#include "auxdata/AuxiliaryDataReplyData.h"
#include "model/DebugParts.h"

namespace vela::platform::places
{

bool AuxiliaryDataReplyData::operator==(const AuxiliaryDataReplyData &other) const
{
    return status == other.status && data == other.data && place == other.place
           && userDefinedValue == other.userDefinedValue;
}

AuxiliaryDataReply::AuxiliaryDataReply()
    : d(new AuxiliaryDataReplyData)
{}

AuxiliaryDataReply::AuxiliaryDataReply(const AuxiliaryDataReply &other) = default;
AuxiliaryDataReply::AuxiliaryDataReply(AuxiliaryDataReply &&other) noexcept = default;
AuxiliaryDataReply &AuxiliaryDataReply::operator=(const AuxiliaryDataReply &other) = default;
AuxiliaryDataReply &AuxiliaryDataReply::operator=(AuxiliaryDataReply &&other) noexcept = default;
AuxiliaryDataReply::~AuxiliaryDataReply() = default;

Error::Type AuxiliaryDataReply::status() const
{
    return d->status;
}

QString AuxiliaryDataReply::reason() const
{
    return d->reason;
}

QList<AuxiliaryData> AuxiliaryDataReply::data() const
{
    return d->data;
}

QSharedPointer<AbstractPlace> AuxiliaryDataReply::place() const
{
    return d->place;
}

QVariant AuxiliaryDataReply::userDefinedValue() const
{
    return d->userDefinedValue;
}

bool operator==(const AuxiliaryDataReply &left, const AuxiliaryDataReply &right)
{
    return *AuxiliaryDataReplyData::fromPublic(left) == *AuxiliaryDataReplyData::fromPublic(right);
}

bool operator!=(const AuxiliaryDataReply &left, const AuxiliaryDataReply &right)
{
    return !(left == right);
}

QDebug operator<<(QDebug debug, const AuxiliaryDataReply &reply)
{
    DebugParts(debug, "AuxiliaryDataReply")
        .addName(reply.status())
        .addIf(!reply.reason().isEmpty(), reply.reason())
        .addIf(!reply.place().isNull(), reply.place().data())
        .addCount(reply.data().size(), "record");
    return debug;
}

} // namespace vela::platform::places
