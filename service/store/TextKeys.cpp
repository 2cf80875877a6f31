// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "store/TextKeys.h"

#include <QtCore/QVector>

#include <algorithm>
#include <utility>

namespace placesd
{

namespace
{

/// Combining marks that are accents: the blocks "Combining Diacritical Marks", with Extended and Supplement.
bool isAccent(QChar c)
{
    const ushort code = c.unicode();
    return (code >= 0x0300 && code <= 0x036F) || (code >= 0x1AB0 && code <= 0x1AFF)
           || (code >= 0x1DC0 && code <= 0x1DFF);
}

/// The categories that the full-text index takes for parts of words: L*, N*, M*, Co and So.
bool isPartOfWord(uint code)
{
    const QChar::Category category = QChar::category(code);
    return QChar::isLetterOrNumber(code) || QChar::isMark(code) || category == QChar::Other_PrivateUse
           || category == QChar::Symbol_Other;
}

} // namespace

QString searchKey(const QString &text)
{
    QString key;
    for (const QChar c : text.normalized(QString::NormalizationForm_KD)) {
        if (!isAccent(c))
            key.append(c);
    }
    key = key.toCaseFolded();
    key.replace(QChar(0x00DF), QLatin1String("ss"));
    return key.normalized(QString::NormalizationForm_C);
}

QString sortKey(const QString &text)
{
    return text.toCaseFolded();
}

QStringList words(const QString &text)
{
    QStringList found;
    QVector<uint> word;
    const auto finishWord = [&] {
        if (!word.isEmpty())
            found.append(QString::fromUcs4(word.constData(), word.size()));
        word.clear();
    };
    for (const uint code : text.toUcs4()) {
        if (isPartOfWord(code))
            word.append(code);
        else
            finishWord();
    }
    finishWord();
    found.removeDuplicates();
    return found;
}

bool startWords(const QStringList &there, const QStringList &wanted)
{
    return std::all_of(wanted.begin(), wanted.end(), [&there](const QString &start) {
        const auto word = std::lower_bound(there.begin(), there.end(), start);
        return word != there.end() && word->startsWith(start);
    });
}

bool containsWords(const QString &text, const QString &term)
{
    const QStringList wanted = words(term);
    if (wanted.isEmpty())
        return text.contains(term);
    QStringList there = words(text);
    there.sort();
    return startWords(there, wanted);
}

} // namespace placesd
