// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/Global.h>

#include <QtCore/QObject>

namespace vela::platform::places
{

/// What the virtual data of a location is. Values that have no name here are kept and compared as they are.
struct PLACES_EXPORT VirtualLocationType
{
    Q_GADGET
public:
    enum Type : int
    {
        None = 0,           ///< 0: the location has no virtual data, or data of no particular kind.
        ConferenceCall = 1, ///< 1: a telephone conference: number and access code.
        WebAddress = 2,     ///< 2: a place on the web: its URL.
    };
    Q_ENUM(Type)
};

} // namespace vela::platform::places
