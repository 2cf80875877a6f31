// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "places/PlaceStorageReply.h"

#include "manager/PlaceStorageReplyData.h"
#include "model/DebugParts.h"

namespace vela::platform::places
{

PlaceStorageReply::PlaceStorageReply()
    : d(new PlaceStorageReplyData)
{}

PlaceStorageReply::PlaceStorageReply(const PlaceStorageReply &other) = default;
PlaceStorageReply::PlaceStorageReply(PlaceStorageReply &&other) noexcept = default;
PlaceStorageReply &PlaceStorageReply::operator=(const PlaceStorageReply &other) = default;
PlaceStorageReply &PlaceStorageReply::operator=(PlaceStorageReply &&other) noexcept = default;
PlaceStorageReply::~PlaceStorageReply() = default;

int PlaceStorageReply::jobId() const
{
    return d->jobId;
}

QVariant PlaceStorageReply::tag() const
{
    return d->tag;
}

Error::Type PlaceStorageReply::status() const
{
    return d->status;
}

QString PlaceStorageReply::reason() const
{
    return d->reason;
}

qint64 PlaceStorageReply::placeId() const
{
    return d->placeId;
}

QSharedPointer<Place> PlaceStorageReply::place() const
{
    return d->place;
}

QDebug operator<<(QDebug debug, const PlaceStorageReply &reply)
{
    DebugParts(debug, "PlaceStorageReply")
        .addLabelled("job", reply.jobId())
        .addName(reply.status())
        .addIf(!reply.reason().isEmpty(), reply.reason())
        .addIf(!reply.place().isNull(), static_cast<const AbstractPlace *>(reply.place().data()));
    return debug;
}

} // namespace vela::platform::places
