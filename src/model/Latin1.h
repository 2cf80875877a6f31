// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QLatin1String>

namespace vela::platform::places
{

/// A literal that can stand in a constant table: QLatin1String's own constructor measures its text, which not every
/// compiler does before the program runs.
template <std::size_t Size>
constexpr QLatin1String latin1(const char (&text)[Size])
{
    return QLatin1String(text, static_cast<int>(Size) - 1);
}

} // namespace vela::platform::places
