// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QString>

namespace orix_places_protocol
{

/// Formats the reason of a failed reply as one line, for client and service. Invalid UTF-8 becomes U+FFFD; control
/// characters and line separators become blanks.
QString lineOf(const char *utf8, int size);

} // namespace orix_places_protocol
