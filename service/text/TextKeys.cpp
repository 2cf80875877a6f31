// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "text/TextKeys.h"

#include "places/SearchOperator.h"
#include "text/Utf8.h"

#include <QtCore/QVector>

#include <algorithm>
#include <utility>

namespace placesd
{

using vela::platform::places::SearchOperator;

namespace
{

/// Combining marks that are accents: the blocks "Combining Diacritical Marks", with Extended and Supplement.
bool isAccent(QChar c)
{
    const ushort code = c.unicode();
    return (code >= 0x0300 && code <= 0x036F) || (code >= 0x1AB0 && code <= 0x1AFF)
           || (code >= 0x1DC0 && code <= 0x1DFF);
}

/// What the full-text index takes for parts of words: the categories L*, N*, M*, Co and So, and all that Unicode 6.1,
/// which it goes by, did not know. U+166D was punctuation then.
bool isPartOfWord(uint code)
{
    const QChar::Category category = QChar::category(code);
    const bool isOfKind = QChar::isLetterOrNumber(code) || QChar::isMark(code) || category == QChar::Other_PrivateUse
                          || category == QChar::Symbol_Other;
    const bool isUnknown = category == QChar::Other_NotAssigned || QChar::unicodeVersion(code) > QChar::Unicode_6_1;
    return (isOfKind && code != 0x166D) || isUnknown;
}

bool endsWith(std::string_view text, std::string_view end)
{
    return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

bool isPartOfWordAt(std::string_view text, std::size_t &position)
{
    const char c = text[position];
    if (static_cast<unsigned char>(c) >= 0x80)
        return isPartOfWord(codePointAt(text, position));
    ++position;
    return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z');
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

TextTest::TextTest(int op, const QString &term)
    : m_op(op)
    , m_term(term.toStdString())
{
    if (op != SearchOperator::Contains)
        return;
    for (const QString &word : words(term))
        m_words.push_back(word.toStdString());
}

bool TextTest::isUnderstood() const
{
    return m_op >= SearchOperator::Equals && m_op <= SearchOperator::EndsWith;
}

bool TextTest::operator()(std::string_view text) const
{
    switch (m_op) {
    case SearchOperator::Equals:
        return text == m_term;
    case SearchOperator::NotEqual:
        return text != m_term;
    case SearchOperator::GreaterOrEqual:
        return text >= m_term;
    case SearchOperator::LessOrEqual:
        return text <= m_term;
    case SearchOperator::StartsWith:
        return startsWith(text, m_term);
    case SearchOperator::Contains:
        return containsWords(text);
    case SearchOperator::EndsWith:
        return endsWith(text, m_term);
    default:
        return false;
    }
}

/// Looks at each start of a word for the words that were not found yet; no memory is taken.
bool TextTest::containsWords(std::string_view text) const
{
    if (m_words.empty())
        return text.find(m_term) != std::string_view::npos;
    return std::all_of(m_words.begin(), m_words.end(), [text](const std::string &wanted) {
        bool isWithinWord = false;
        for (std::size_t position = 0; position < text.size();) {
            const std::size_t start = position;
            const bool isPart = isPartOfWordAt(text, position);
            if (isPart && !isWithinWord && startsWith(text.substr(start), wanted))
                return true;
            isWithinWord = isPart;
        }
        return false;
    });
}

} // namespace placesd
