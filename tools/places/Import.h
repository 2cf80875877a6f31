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
    QString format; ///< Name of the files' format; empty to go by their extensions and contents.
    formats::ReadOptions read;
    MemberImporter::Options store;
    Form form = Form::Table;
    bool isQuiet = false; ///< Leaves the counts out.
};

/// Stores the places of files; "-" stands for standard input. What cannot be imported is named and left out; the counts
/// come at the end; as JSON with the first problems. Failed when anything was left out, but for lines, areas, tracks
/// and routes. SIGINT and SIGTERM end it once what is in flight is stored; the status is that of the signal.
ExitStatus importFiles(const QStringList &paths, const ImportOptions &options);

} // namespace tool
