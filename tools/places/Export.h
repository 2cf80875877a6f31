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
    QString format; ///< Name of the format; empty to take it from the file's extension. Without an extension it is
                    ///< GeoJSON; an unknown extension is wrong use.
    PlaceChoice choice;
};

/// Writes the chosen places to a file. An existing file is replaced only after all places are written, except those
/// that the format cannot hold. Texts are written unchanged, except on a terminal: there printableJson() escapes them.
/// @param count set to the number of places written.
ExitStatus exportPlaces(const ExportOptions &options, qint64 &count);

} // namespace tool
