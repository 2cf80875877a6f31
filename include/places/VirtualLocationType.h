// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/Global.h>

#include <QtCore/QObject>

namespace vela::platform::places
{

/// Kind of a location's virtual data. Values without a name here are kept and compared.
struct PLACES_EXPORT VirtualLocationType
{
    Q_GADGET
public:
    enum Type : int
    {
        None = 0,           ///< 0: no virtual data, or data of no specific kind.
        ConferenceCall = 1, ///< 1: a telephone conference: number and access code.
        WebAddress = 2,     ///< 2: a web page: its URL.
    };
    Q_ENUM(Type)
};

} // namespace vela::platform::places
