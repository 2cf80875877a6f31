// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "text/TextKeys.h"

#include "places/SearchOperator.h"
#include "text/Folding.h"
#include "text/Spellings.h"
#include "text/Utf8.h"

#include <QtCore/QVector>

#include <unicode/uscript.h>
#include <unicode/uvernum.h>

#include <algorithm>

namespace placesd
{

using vela::platform::places::SearchOperator;

namespace
{

/// Characters that the full-text index treats as part of words: the categories L*, N*, M*, Co and So, and characters
/// unknown to Unicode 6.1, which the index uses. U+166D was punctuation in that version.
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

/// Start of the character that contains a byte of valid UTF-8.
std::size_t startOfCharacter(std::string_view text, std::size_t position)
{
    while (position > 0 && isContinuation(text[position]))
        --position;
    return position;
}

bool isPartOfWordAt(std::string_view text, std::size_t position)
{
    const char c = text[position];
    if (static_cast<unsigned char>(c) >= 0x80)
        return isPartOfWord(codePointAt(text, position));
    return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z');
}

} // namespace

std::string keyVersion()
{
    return "1 ICU " U_ICU_VERSION;
}

QString searchKey(const QString &text)
{
    return withoutAccents(caseFolded(text));
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
    const auto codes = text.toUcs4();
    for (const uint code : codes) {
        if (isPartOfWord(code))
            word.append(code);
        else
            finishWord();
    }
    finishWord();
    found.removeDuplicates();
    return found;
}

std::vector<std::string> utf8Words(const QString &text)
{
    std::vector<std::string> found;
    const QStringList wordsOfText = words(text);
    for (const QString &word : wordsOfText)
        found.push_back(word.toStdString());
    return found;
}

QString indexKey(const QString &text)
{
    return indexKey(QStringList{text});
}

QString indexKey(const QStringList &texts)
{
    QStringList keys;
    QStringList spellings;
    for (const QString &text : texts) {
        keys.append(searchKey(text));
        const auto spelled = spelledWords(text);
        for (const SpelledWord &word : spelled)
            spellings += word.others + word.pieces;
    }
    keys.removeDuplicates();
    spellings.removeDuplicates();
    if (keys.size() > 1 || !spellings.isEmpty())
        keys.append(spellings.join(QLatin1Char(' ')));
    return keys.join(QLatin1Char(KEY_END));
}

std::string_view searchKeyIn(std::string_view indexKey)
{
    return indexKey.substr(0, indexKey.find(KEY_END));
}

bool isTextIn(std::string_view indexKey, std::string_view key)
{
    const std::size_t last = indexKey.rfind(KEY_END);
    for (std::string_view rest = indexKey.substr(0, last); !rest.empty();) {
        const std::string_view text = searchKeyIn(rest);
        if (text == key)
            return true;
        rest.remove_prefix(std::min(rest.size(), text.size() + 1));
    }
    return false;
}

std::vector<std::string> wordStarts(std::string_view key, std::size_t most)
{
    std::vector<std::string> starts;
    for (std::size_t end = 1; end < key.size() && starts.size() < most; ++end) {
        const bool isEnd = isPartOfWordAt(key, startOfCharacter(key, end - 1)) && !isContinuation(key[end])
                           && !isPartOfWordAt(key, end);
        if (isEnd)
            starts.emplace_back(key.substr(0, end));
    }
    return starts;
}

bool isUnspaced(uint code)
{
    UErrorCode status = U_ZERO_ERROR;
    switch (uscript_getScript(static_cast<UChar32>(code), &status)) {
    case USCRIPT_HAN:
    case USCRIPT_HIRAGANA:
    case USCRIPT_KATAKANA:
    case USCRIPT_THAI:
    case USCRIPT_LAO:
    case USCRIPT_KHMER:
    case USCRIPT_MYANMAR:
        return true;
    default:
        return code == 0x30FC; // lengthens the vowel of a kana
    }
}

bool hasWord(std::string_view key, std::string_view start, bool isWhole)
{
    for (auto at = key.find(start); at != std::string_view::npos; at = key.find(start, at + 1)) {
        const bool isStart = at == 0 || !isPartOfWordAt(key, startOfCharacter(key, at - 1));
        const std::size_t end = at + start.size();
        if (isStart && (!isWhole || end == key.size() || !isPartOfWordAt(key, end)))
            return true;
    }
    return false;
}

TextTest::TextTest(int op, const QString &term)
    : m_op(op)
    , m_term(term.toStdString())
{
    if (op != SearchOperator::Contains)
        return;
    const QStringList termWords = words(term);
    for (const QString &word : termWords)
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

bool TextTest::containsWords(std::string_view text) const
{
    if (m_words.empty())
        return text.find(m_term) != std::string_view::npos;
    return std::all_of(m_words.begin(), m_words.end(),
                       [text](const std::string &wanted) { return hasWord(text, wanted); });
}

} // namespace placesd
