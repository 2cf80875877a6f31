// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "PlaceChoice.h"
#include "Report.h"

#include <QtCore/QString>

namespace tool
{

struct ExportOptions
{
    QString path;   ///< "-" for standard output.
    QString format; ///< Name of the format; empty to go by the file's extension, and else for GeoJSON.
    PlaceChoice choice;
};

/// Writes the chosen places to a file, which is replaced only when all are written. Texts are written as they are, but
/// on a terminal: there they have escapes, see printableJson().
/// @param count how many were written.
ExitStatus exportPlaces(const ExportOptions &options, qint64 &count);

} // namespace tool
