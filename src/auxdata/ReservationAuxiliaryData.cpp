// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "places/ReservationAuxiliaryData.h"

#include "auxdata/SharedAuxiliaryData.h"
#include "model/DebugParts.h"

namespace vela::platform::places
{

class ReservationData : public SharedAuxiliaryData
{
public:
    using SharedAuxiliaryData::SharedAuxiliaryData;
    ReservationData()
        : SharedAuxiliaryData(AuxiliaryData::TypeReservation)
    {}
};

template class SharedAuxiliaryDataView<ReservationData>;

bool ReservationAuxiliaryData::isValid() const
{
    return isOfType(AuxiliaryData::TypeReservation) && url().isValid();
}

QDebug operator<<(QDebug debug, const ReservationAuxiliaryData &reservation)
{
    DebugParts(debug, "ReservationAuxiliaryData")
        .addIf(!reservation.url().isEmpty(), reservation.url().toDisplayString());
    return debug;
}

} // namespace vela::platform::places
