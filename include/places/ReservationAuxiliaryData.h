// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/SharedAuxiliaryDataView.h>

namespace vela::platform::places
{

class ReservationData;
extern template class PLACES_EXPORT SharedAuxiliaryDataView<ReservationData>;

/// A record of type "lbs-reservation" seen as a way to make a reservation at the place: url() leads there.
class PLACES_EXPORT ReservationAuxiliaryData : public SharedAuxiliaryDataView<ReservationData>
{
public:
    using SharedAuxiliaryDataView::SharedAuxiliaryDataView;

    /// True when the record is of type "lbs-reservation" and url() is a valid URL.
    [[nodiscard]] bool isValid() const;
};

} // namespace vela::platform::places
