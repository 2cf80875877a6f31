// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "text/Spellings.h"

#include "text/Folding.h"
#include "text/TextKeys.h"

#include <QtCore/QVector>

#include <algorithm>

namespace placesd
{

namespace
{

bool isApostrophe(QChar c)
{
    const ushort code = c.unicode();
    return code == '\'' || code == '`' || code == 0x2018 || code == 0x2019 || code == 0x02BB || code == 0x02BC;
}

/// Replaces special letters of several languages by two letters, for keyboards without them. @param text case-folded.
QString withTwoLetters(const QString &text)
{
    QString spelled;
    for (const QChar c : text) {
        switch (c.unicode()) {
        case 0x00E4:
            spelled += QLatin1String("ae");
            break;
        case 0x00F6:
        case 0x00F8:
            spelled += QLatin1String("oe");
            break;
        case 0x00FC:
            spelled += QLatin1String("ue");
            break;
        case 0x00E5:
            spelled += QLatin1String("aa");
            break;
        default:
            spelled += c;
        }
    }
    return spelled;
}

void addUnless(QStringList &texts, const QStringList &more, const QString &known)
{
    for (const QString &text : more) {
        if (text != known && !texts.contains(text))
            texts.append(text);
    }
}

SpelledWord spelledWord(const QString &folded)
{
    SpelledWord word;
    word.key = withoutAccents(folded);
    if (isAscii(folded))
        return word;
    addUnless(word.others, words(withoutAccents(withTwoLetters(folded))), word.key);
    addUnless(word.others, words(inLatin(folded)), word.key);
    word.pieces = piecesOf(word.key);
    return word;
}

/// Words with an apostrophe, joined: "o'hare" as "ohare".
QList<SpelledWord> joinedWords(const QString &folded)
{
    QList<SpelledWord> joined;
    if (std::none_of(folded.begin(), folded.end(), isApostrophe))
        return joined;
    const QStringList parts = folded.split(QLatin1Char(' '));
    for (const QString &part : parts) {
        if (!std::any_of(part.begin(), part.end(), isApostrophe))
            continue;
        QString whole;
        std::remove_copy_if(part.begin(), part.end(), std::back_inserter(whole), isApostrophe);
        const QStringList plainWords = words(withoutAccents(whole));
        for (const QString &word : plainWords)
            joined.append({QString(), {word}, {}});
    }
    return joined;
}

} // namespace

QList<SpelledWord> spelledWords(const QString &text)
{
    const QString folded = caseFolded(text);
    QList<SpelledWord> found;
    const QStringList wordsOfText = words(folded);
    for (const QString &word : wordsOfText)
        found.append(spelledWord(word));
    return found + joinedWords(folded);
}

QStringList piecesOf(const QString &key)
{
    const QVector<uint> codes = key.toUcs4();
    if (std::none_of(codes.begin(), codes.end(), isUnspaced))
        return {};
    QStringList pieces;
    for (int i = 0; i < codes.size();) {
        const bool isRun = isUnspaced(codes[i]);
        int end = i;
        while (end < codes.size() && isUnspaced(codes[end]) == isRun)
            ++end;
        if (!isRun)
            pieces.append(QString::fromUcs4(&codes[i], end - i));
        for (int at = i; isRun && at < end; ++at)
            pieces.append(QString::fromUcs4(&codes[at], std::min(2, end - at)));
        i = end;
    }
    pieces.removeDuplicates();
    return pieces;
}

} // namespace placesd
