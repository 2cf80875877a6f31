// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "places/ReservationAuxiliaryData.h"

#include "auxdata/SharedAuxiliaryData.h"

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

} // namespace vela::platform::places
