// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Random.h"

#include <QtCore/QString>

namespace bench
{

/// What goes wrong when a word is typed.
enum class Slip
{
    Swapped, ///< Two neighbouring letters.
    Missing, ///< A letter, but not the last one: without that, the word is a beginning of itself.
    Wrong,   ///< A letter.
    Extra    ///< A letter, in or behind the word.
};

/// A word with one slip in it. The word may come back unchanged, where a letter is replaced by itself.
/// @param word three letters at least.
/// @param isFirst whether the slip is at the first letter; else it never is.
QString withSlip(const QString &word, Slip slip, bool isFirst, Random &random);

} // namespace bench
