// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "formats/PlaceReader.h"
#include "MemberImporter.h"
#include "Report.h"

#include <QtCore/QStringList>

namespace tool
{

struct ImportOptions
{
    QString format; ///< Name of the files' format; empty to detect it by extension and content.
    formats::ReadOptions read;
    MemberImporter::Options store;
    Form form = Form::Table;
    bool isQuiet = false; ///< Suppresses the counts.
};

/// Stores the places of files. "-" is standard input. Each member that cannot be imported is reported and left out. The
/// counts come at the end, in JSON with the first problems. Failed when a member failed or a file has an error; lines,
/// areas, tracks and routes do not count. SIGINT and SIGTERM stop the import after the places in flight are stored; the
/// status is then that of the signal.
ExitStatus importFiles(const QStringList &paths, const ImportOptions &options);

} // namespace tool
