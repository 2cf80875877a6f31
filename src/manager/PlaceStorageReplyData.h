// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/PlaceId.h"
#include "places/Place.h"
#include "places/PlaceStorageReply.h"

#include <QtCore/QSharedData>

namespace vela::platform::places
{

class PlaceStorageReplyData : public QSharedData
{
public:
    /// Writable data of a reply. Detaches the reply from its copies.
    static PlaceStorageReplyData *fromPublic(PlaceStorageReply &reply) { return reply.d.get(); }

    int jobId = 0;
    QVariant tag;
    Error::Type status = Error::Unspecified;
    QString reason;
    qint64 placeId = PlaceId::UNDEFINED_PERSISTED_ID;
    QSharedPointer<Place> place;
};

} // namespace vela::platform::places
