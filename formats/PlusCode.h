// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Position.h"

namespace formats
{

/// Reads a full plus code (Open Location Code) as the centre of its area; the horizontal accuracy is the radius of the
/// area. Digits are case-insensitive. A short code gives a problem, because it needs a reference. Neither is set for a
/// text that is not a plus code.
ReadPosition readPlusCode(const QString &text);

} // namespace formats
