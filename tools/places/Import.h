// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Report.h"

#include <QtCore/QStringList>

namespace tool
{

/// Adds the features of GeoJSON files as places. What is no place is named and left out; counts come at the end.
ExitStatus importFiles(const QStringList &paths);

} // namespace tool
