// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/Global.h>

#include <QtCore/QObject>

namespace vela::platform::places
{

/// How sure a search is that a result is what was meant. Values that have no name here are kept as they are.
struct PLACES_EXPORT SearchResultCertainty
{
    Q_GADGET
public:
    enum Type : int
    {
        Unknown = 0, ///< 0: the place is no search result, or nothing is known about it.
        Exact = 1,   ///< 1: the result is what was asked for.
        Likely = 2,  ///< 2: the result fits well.
        Guess = 3,   ///< 3: the result is a guess.
    };
    Q_ENUM(Type)
};

} // namespace vela::platform::places
