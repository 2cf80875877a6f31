// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KnownPlaces.h"
#include "QuestionSet.h"

namespace bench
{

/// Reads queries written by people. A line contains the typed text, the name of the intended place, and the code of its
/// country or nothing, separated by tabs. Empty lines and lines that start with "#" are skipped. Prints all invalid
/// lines and lines with an unknown place, and then ends the program.
/// @param places must outlive the queries.
QuestionSet readQuestions(const QString &path, const KnownPlaces &places);

} // namespace bench
