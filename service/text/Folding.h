// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QString>

/// The steps of folding, with ICU.
namespace placesd
{

bool isAscii(const QString &text);

/// Case folding with compatibility decomposition, without ignorable characters (NFKC_Casefold, Unicode chapter 3.13).
/// Accents are kept. KEY_END becomes a blank.
QString caseFolded(const QString &text);

/// @param text case-folded. Removes accents and converts Latin letters to ASCII.
QString withoutAccents(const QString &text);

/// @param text case-folded. Transliterates to Latin letters as people usually type them: Cyrillic by BGN/PCGN, Greek by
/// UNGEGN, other scripts by ICU's Any-Latin. Empty when the text has only Latin letters.
QString inLatin(const QString &text);

} // namespace placesd
