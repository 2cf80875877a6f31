// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "Spelling.h"

#include <algorithm>

namespace bench
{

namespace
{

struct Replacement
{
    const char *letter;
    const char *typed;
};

/// Letters whose accents are not separated by decomposition.
constexpr Replacement PLAIN_LETTERS[] = {{"ł", "l"},  {"Ł", "L"},  {"ø", "o"},  {"Ø", "O"},  {"đ", "d"},  {"Đ", "D"},
                                         {"ð", "d"},  {"Ð", "D"},  {"ħ", "h"},  {"Ħ", "H"},  {"ı", "i"},  {"ß", "ss"},
                                         {"æ", "ae"}, {"Æ", "Ae"}, {"œ", "oe"}, {"Œ", "Oe"}, {"þ", "th"}, {"Þ", "Th"}};

constexpr Replacement DIGRAPHS[] = {{"ä", "ae"}, {"Ä", "Ae"}, {"ö", "oe"}, {"Ö", "Oe"}, {"ü", "ue"},
                                    {"Ü", "Ue"}, {"ß", "ss"}, {"å", "aa"}, {"Å", "Aa"}, {"ø", "oe"},
                                    {"Ø", "Oe"}, {"æ", "ae"}, {"Æ", "Ae"}};

template <std::size_t SIZE>
QString replaced(QString text, const Replacement (&replacements)[SIZE])
{
    for (const auto &[letter, typed] : replacements)
        text.replace(QString::fromUtf8(letter), QLatin1String(typed));
    return text;
}

} // namespace

QString withoutAccents(const QString &text)
{
    if (scriptOf(text) != QChar::Script_Latin)
        return text;
    QString plain = text.normalized(QString::NormalizationForm_D);
    const auto isAccent = [](QChar each) { return each.category() == QChar::Mark_NonSpacing; };
    plain.truncate(static_cast<int>(std::remove_if(plain.begin(), plain.end(), isAccent) - plain.begin()));
    return replaced(plain, PLAIN_LETTERS);
}

QString folded(const QString &text)
{
    return withoutAccents(text).toCaseFolded();
}

QString withDigraphs(const QString &text)
{
    return replaced(text.normalized(QString::NormalizationForm_C), DIGRAPHS);
}

QChar::Script scriptOf(const QString &text)
{
    const auto letter = std::find_if(text.begin(), text.end(), [](QChar each) { return each.isLetter(); });
    return letter == text.end() ? QChar::Script_Unknown : letter->script();
}

} // namespace bench
