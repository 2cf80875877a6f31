// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/Global.h>

#include <QtCore/QObject>

namespace vela::platform::places
{

/// How a search rule compares. Names and auxiliary data compare without regard to case and accents; owners, tags and
/// types compare exactly.
struct PLACES_EXPORT SearchOperator
{
    Q_GADGET
public:
    enum Type : int
    {
        None = 1,           ///< 1: the rule does not compare.
        Equals = 2,         ///< 2: the same.
        NotEqual = 3,       ///< 3: not the same.
        GreaterOrEqual = 4, ///< 4: the same or more.
        LessOrEqual = 5,    ///< 5: the same or less.
        StartsWith = 6,     ///< 6: the text begins with the term.
        Contains = 7,       ///< 7: every word of the term starts a word of the text.
        EndsWith = 8,       ///< 8: the text ends with the term.
    };
    Q_ENUM(Type)
};

} // namespace vela::platform::places
