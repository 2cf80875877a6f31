// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

namespace placesd
{

/// A word and its other spellings. All are search keys without separators.
struct SpelledWord
{
    QString key;        ///< The word itself, without case and accents.
    QStringList others; ///< With umlauts as two letters, without apostrophes, in Latin letters.
    QStringList pieces; ///< For a word with characters of a script without spaces; see piecesOf().
};

/// The words of a text, without duplicates.
QList<SpelledWord> spelledWords(const QString &text);

/// Pieces of a word with characters of a script without spaces: the pairs of neighbours in each run of them, the last
/// character of each run, and the other letters between the runs. Empty for any other word.
/// @param key a word of a search key.
QStringList piecesOf(const QString &key);

} // namespace placesd
