// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Report.h"

#include <QtCore/QString>

namespace tool
{

/// Asks the service to write the whole store to a backup file. "-" is standard output, which must not be a terminal.
ExitStatus backUp(const QString &path);
/// Asks the service to replace the whole store by a backup file. "-" is standard input.
ExitStatus restore(const QString &path);

} // namespace tool
