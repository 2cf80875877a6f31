// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Position.h"

namespace formats
{

/// Reads a full plus code (Open Location Code) as the centre of its area, with the radius of the area as horizontal
/// accuracy. Digits may be of either case. A short code is a problem: it needs a reference. Nothing is set for a text
/// that is no plus code.
ReadPosition readPlusCode(const QString &text);

} // namespace formats
