// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "places/AuxiliaryDataReply.h"

#include "auxdata/AuxiliaryDataReplyData.h"

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
AuxiliaryDataReply &AuxiliaryDataReply::operator=(const AuxiliaryDataReply &other) = default;
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

} // namespace vela::platform::places
