// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "places/AbstractPlace.h"
#include "places/AuxiliaryDataRequest.h"

#include <QtCore/QSharedData>

namespace vela::platform::places
{

class AuxiliaryDataRequestData : public QSharedData
{
public:
    static const AuxiliaryDataRequestData *fromPublic(const AuxiliaryDataRequest &request) { return request.d.get(); }

    bool operator==(const AuxiliaryDataRequestData &other) const;

    QSharedPointer<AbstractPlace> place;
    QString dataType;
    bool remoteDataOnly = false;
    Provider provider;
    int offset = 0;
    int limit = -1;
    QVariant userDefinedValue;
};

} // namespace vela::platform::places
