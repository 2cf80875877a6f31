// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QString>

namespace orix_places_protocol
{

/// A reason of a failed reply as one line for a person, for both ends of the wire. Bytes that are no UTF-8 become
/// U+FFFD, control characters and separators of lines become blanks.
QString lineOf(const char *utf8, int size);

} // namespace orix_places_protocol
