// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Report.h"

namespace tool
{

/// Fetches and shows the auxiliary records of a stored place.
/// @param type the type of the records; empty for all types.
/// @param onlyRemote true for records of providers only.
ExitStatus showRecords(qint64 id, const QString &type, bool onlyRemote, Form form);

} // namespace tool
