// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "TextKeys.h"

#include <algorithm>

namespace placesd
{

QString searchKey(const QString &text)
{
    QString key;
    for (const QChar c : text.normalized(QString::NormalizationForm_KD)) {
        if (!c.isMark())
            key.append(c);
    }
    return key.toCaseFolded();
}

QString sortKey(const QString &text)
{
    return text.toCaseFolded();
}

QStringList words(const QString &text)
{
    QStringList found;
    QString word;
    for (const QChar c : text) {
        if (c.isLetterOrNumber() || c.isMark() || c.isSurrogate())
            word.append(c);
        else if (!word.isEmpty())
            found.append(std::exchange(word, QString()));
    }
    if (!word.isEmpty())
        found.append(word);
    return found;
}

bool containsWords(const QString &text, const QString &term)
{
    const QStringList there = words(text);
    const QStringList wanted = words(term);
    return std::all_of(wanted.begin(), wanted.end(), [&there](const QString &start) {
        return std::any_of(there.begin(), there.end(),
                           [&start](const QString &word) { return word.startsWith(start); });
    });
}

} // namespace placesd
