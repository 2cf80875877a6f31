// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Report.h"

#include <QtCore/QString>

namespace tool
{

/// Has the service write all that is stored to a backup file; "-" stands for standard output, which is no terminal.
ExitStatus backUp(const QString &path);
/// Has the service replace all that is stored by what a backup file holds; "-" stands for standard input.
ExitStatus restore(const QString &path);

} // namespace tool
