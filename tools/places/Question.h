// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QString>

namespace tool
{

/// Asks on standard error and reads a line from standard input. "y" and "yes" in any case mean yes, an empty line means
/// `isYes`. Anything else, and the end of the input, means no.
[[nodiscard]] bool ask(const QString &question, bool isYes);

} // namespace tool
