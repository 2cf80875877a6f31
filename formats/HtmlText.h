// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QString>

namespace formats
{

/// Plain text of a text that may be HTML. Tags and comments go, references such as "&eacute;" become their characters,
/// and what starts a line in HTML (br, p, div, li, tr, headings) becomes a line feed. Blanks at the ends of lines go,
/// as do empty lines after the first. "<" and "&" that begin no tag or reference of HTML stand for themselves, so plain
/// text stays as it is. Takes time in proportion to the text, whatever it is.
QString htmlToText(const QString &text);

} // namespace formats
