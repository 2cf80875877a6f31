// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Report.h"

namespace tool
{

/// Writes every stored place to a file, which is replaced only when all are written, or to standard output under the
/// name "-". Texts are written as they are, but on a terminal: there they have escapes, see printableJson().
/// @param format name of the format; empty to go by the file's extension, and else for GeoJSON.
ExitStatus exportPlaces(const QString &path, const QString &format);

} // namespace tool
