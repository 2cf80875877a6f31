// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/SharedAuxiliaryDataView.h>

namespace vela::platform::places
{

class ReservationData;
extern template class PLACES_EXPORT SharedAuxiliaryDataView<ReservationData>;

/// A view of a record of type "lbs-reservation": url() leads to a reservation at the place.
class PLACES_EXPORT ReservationAuxiliaryData : public SharedAuxiliaryDataView<ReservationData>
{
public:
    using SharedAuxiliaryDataView::SharedAuxiliaryDataView;
    friend void swap(ReservationAuxiliaryData &left, ReservationAuxiliaryData &right) noexcept { left.swap(right); }

    /// True when the record is of type "lbs-reservation" and url() is a valid URL.
    [[nodiscard]] bool isValid() const;
};

/// For debugging: web address.
PLACES_EXPORT QDebug operator<<(QDebug debug, const ReservationAuxiliaryData &reservation);

} // namespace vela::platform::places

Q_DECLARE_TYPEINFO(vela::platform::places::ReservationAuxiliaryData, Q_MOVABLE_TYPE);
Q_DECLARE_METATYPE(vela::platform::places::ReservationAuxiliaryData)
