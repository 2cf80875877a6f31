// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Report.h"

namespace tool
{

/// Writes all stored places to a file, or to standard output for the path "-". The file is replaced only when all
/// places are written, but for those that the format cannot hold. Texts are written unchanged, except on a terminal:
/// there printableJson() escapes them.
/// @param format name of the format; empty to take it from the file's extension. Without an extension it is GeoJSON; an
/// unknown extension is wrong use.
ExitStatus exportPlaces(const QString &path, const QString &format);

} // namespace tool
