// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Report.h"

#include <QtCore/QStringList>

namespace tool
{

/// Adds the places of files; "-" stands for standard input. What is no place is named and left out; the counts come at
/// the end; as JSON with the first problems. Failed when anything was left out.
/// @param format name of the files' format; empty to go by their extensions and contents.
ExitStatus importFiles(const QStringList &paths, const QString &format, Form form);

} // namespace tool
