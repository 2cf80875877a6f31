// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Report.h"

#include <QtCore/QStringList>

namespace tool
{

/// Adds the places of files; "-" is standard input. Members that are no places are reported and left out. Counts are
/// printed at the end; as JSON with the first problems. Failed when anything was left out.
/// @param format name of the files' format; empty to detect it by extension and content.
ExitStatus importFiles(const QStringList &paths, const QString &format, Form form);

} // namespace tool
