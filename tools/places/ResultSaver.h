// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Commands.h"

namespace tool
{

/// Stores search results and says the number of each in the store. A result that is stored already, or is the same as a
/// stored place by the rules of an import, is not stored again. Failed when one cannot be stored.
ExitStatus saveResults(const formats::PlaceList &results, const Context &context);

} // namespace tool
