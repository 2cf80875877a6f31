// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/Global.h>

#include <QtCore/QObject>

namespace vela::platform::places
{

/// Comparison in a search rule. Names and auxiliary data are compared without case and accents; owners, tags and types
/// exactly.
struct PLACES_EXPORT SearchOperator
{
    Q_GADGET
public:
    enum Type : int
    {
        None = 1,           ///< 1: no comparison.
        Equals = 2,         ///< 2: equal.
        NotEqual = 3,       ///< 3: not equal.
        GreaterOrEqual = 4, ///< 4: equal or greater.
        LessOrEqual = 5,    ///< 5: equal or less.
        StartsWith = 6,     ///< 6: the text starts with the term.
        Contains = 7,       ///< 7: every word of the term is a prefix of a word of the text.
        EndsWith = 8,       ///< 8: the text ends with the term.
    };
    Q_ENUM(Type)
};

} // namespace vela::platform::places
