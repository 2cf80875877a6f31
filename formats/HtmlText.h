// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QString>

namespace formats
{

/// Converts HTML to plain text. Tags and comments are removed, character references such as "&eacute;" are decoded, and
/// elements that start a line (br, p, div, li, tr, headings) become line feeds. Blanks at the ends of lines and
/// repeated empty lines are removed. A text without HTML tags and references is returned unchanged, even with "<" or
/// "&". Runs in linear time.
QString htmlToText(const QString &text);

} // namespace formats
