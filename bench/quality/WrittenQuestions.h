// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KnownPlaces.h"
#include "QuestionSet.h"

namespace bench
{

/// Reads questions that people wrote. A line is what is typed, the name of the place that is meant, and the code of its
/// country or nothing, with tabs between them; an empty line and one that starts with "#" are passed over. Ends the
/// program, after naming each line at fault, when a line is none or no such place is known.
/// @param places what the questions refer to; outlives them.
QuestionSet readQuestions(const QString &path, const KnownPlaces &places);

} // namespace bench
