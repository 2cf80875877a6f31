// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/Global.h>

#include <QtCore/QObject>

namespace vela::platform::places
{

/// Certainty of a search result. Values without a name here are kept.
struct PLACES_EXPORT SearchResultCertainty
{
    Q_GADGET
public:
    enum Type : int
    {
        Unknown = 0, ///< 0: no search result, or unknown.
        Exact = 1,   ///< 1: exact match.
        Likely = 2,  ///< 2: good match.
        Guess = 3,   ///< 3: the result is a guess.
    };
    Q_ENUM(Type)
};

} // namespace vela::platform::places
