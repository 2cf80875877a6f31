// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "places/AbstractPlace.h"
#include "places/AuxiliaryDataReply.h"

#include <QtCore/QSharedData>

namespace vela::platform::places
{

class AuxiliaryDataReplyData : public QSharedData
{
public:
    /// Writable data of a reply. Detaches the reply from its copies.
    static AuxiliaryDataReplyData *fromPublic(AuxiliaryDataReply &reply) { return reply.d.get(); }
    static const AuxiliaryDataReplyData *fromPublic(const AuxiliaryDataReply &reply) { return reply.d.get(); }

    bool operator==(const AuxiliaryDataReplyData &other) const;

    Error::Type status = Error::Success;
    QList<AuxiliaryData> data;
    QSharedPointer<AbstractPlace> place;
    QVariant userDefinedValue;
    QString reason; ///< For people; not compared.
};

} // namespace vela::platform::places
