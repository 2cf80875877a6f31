// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/Global.h>

#include <QtCore/QObject>

namespace vela::platform::places
{

/// Days of the week. Names are available through the meta-object.
class PLACES_EXPORT DayOfWeek
{
    Q_GADGET
public:
    enum Type : int
    {
        Sunday = 0,    ///< 0
        Monday = 1,    ///< 1
        Tuesday = 2,   ///< 2
        Wednesday = 3, ///< 3
        Thursday = 4,  ///< 4
        Friday = 5,    ///< 5
        Saturday = 6,  ///< 6
    };
    Q_ENUM(Type)
};

} // namespace vela::platform::places
