// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Random.h"

#include <QtCore/QString>

namespace bench
{

/// Kind of a typing error in a word.
enum class Slip
{
    Swapped, ///< Two neighbouring letters.
    Missing, ///< A letter, but not the last one: without it, the word is its own prefix.
    Wrong,   ///< A letter.
    Extra    ///< A letter, in or after the word.
};

/// The word with one typing error. It may be unchanged when a letter is replaced by itself.
/// @param word at least three letters.
/// @param isFirst whether the error is at the first letter; otherwise it never is.
QString withSlip(const QString &word, Slip slip, bool isFirst, Random &random);

} // namespace bench
