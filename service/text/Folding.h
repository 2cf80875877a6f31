// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QString>

/// The steps of folding, by ICU.
namespace placesd
{

bool isAscii(const QString &text);

/// Case folding with compatibility decomposition, without ignorable characters (NFKC_Casefold of Unicode's chapter
/// 3.13). Accents stay. KEY_END becomes a blank.
QString caseFolded(const QString &text);

/// @param text case-folded. Without accents, Latin letters as ASCII.
QString withoutAccents(const QString &text);

/// @param text case-folded. In Latin letters, as most people type it: Cyrillic by BGN/PCGN, Greek by UNGEGN, anything
/// else by ICU's Any-Latin. Empty where the text has no letters of other scripts.
QString inLatin(const QString &text);

} // namespace placesd
