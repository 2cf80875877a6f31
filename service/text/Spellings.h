// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

namespace placesd
{

/// A word as it was written, and the ways in which it may be written elsewhere. All are search keys without separators.
struct SpelledWord
{
    QString key;        ///< The word itself, without case and accents.
    QStringList others; ///< Umlauts as two letters, without apostrophes, in Latin letters.
    QStringList pieces; ///< Of a word with characters of a script without spaces: see piecesOf().
};

/// The words of a text, each once.
QList<SpelledWord> spelledWords(const QString &text);

/// What a word with characters of a script without spaces is found by: the pairs of neighbours in each run of them, the
/// last character of each run, and the other letters between the runs. Empty for any other word.
/// @param key a word of a search key.
QStringList piecesOf(const QString &key);

} // namespace placesd
