// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QString>

namespace tool
{

/// Asks on standard error and reads a line from standard input: "y" or "yes" in any case is yes, an empty line what
/// `isYes` says, anything else and the end of the input no.
[[nodiscard]] bool ask(const QString &question, bool isYes);

} // namespace tool
