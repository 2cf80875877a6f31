// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "text/Vocabulary.h"

#include "Limits.h"
#include "text/CorrectionWalk.h"
#include "text/EditAutomaton.h"

#include <QtCore/QString>
#include <QtCore/QVector>

#include <algorithm>
#include <array>
#include <iterator>

namespace placesd
{

namespace
{

constexpr std::size_t LETTERS_FOR_ONE_EDIT = 4;
constexpr std::size_t LETTERS_FOR_TWO_EDITS = 8;

/// Scripts without spaces between words, or whose letters are syllables.
constexpr std::array<QChar::Script, 16> DENSE_SCRIPTS = {
    QChar::Script_Han,   QChar::Script_Hiragana,  QChar::Script_Katakana, QChar::Script_Bopomofo,
    QChar::Script_Yi,    QChar::Script_Hangul,    QChar::Script_Thai,     QChar::Script_Lao,
    QChar::Script_Khmer, QChar::Script_Myanmar,   QChar::Script_Tibetan,  QChar::Script_Javanese,
    QChar::Script_TaiLe, QChar::Script_NewTaiLue, QChar::Script_TaiTham,  QChar::Script_TaiViet};

bool isCorrectableLetter(unsigned code)
{
    if (code < 0x80)
        return code >= 'a' && code <= 'z';
    return QChar::isLetter(code)
           && std::find(DENSE_SCRIPTS.begin(), DENSE_SCRIPTS.end(), QChar::script(code)) == DENSE_SCRIPTS.end();
}

bool isAscii(std::string_view word)
{
    return std::all_of(word.begin(), word.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

/// The code points of a word; empty for invalid UTF-8.
std::vector<unsigned> lettersOf(std::string_view word)
{
    if (isAscii(word))
        return {word.begin(), word.end()};
    const QVector<uint> letters = QString::fromUtf8(word.data(), static_cast<int>(word.size())).toUcs4();
    return {letters.begin(), letters.end()};
}

bool isUtf8(const std::string &word)
{
    return isAscii(word) || QString::fromStdString(word).toStdString() == word;
}

bool isCorrectable(const std::vector<unsigned> &letters)
{
    return std::all_of(letters.begin(), letters.end(), isCorrectableLetter);
}

std::size_t mostEditsOf(const std::vector<unsigned> &letters)
{
    if (letters.size() < LETTERS_FOR_ONE_EDIT || letters.size() > limits::CORRECTED_LETTERS || !isCorrectable(letters))
        return 0;
    return letters.size() < LETTERS_FOR_TWO_EDITS ? 1 : 2;
}

} // namespace

int mostEdits(std::string_view typed)
{
    return static_cast<int>(mostEditsOf(lettersOf(typed)));
}

void Vocabulary::add(std::vector<std::string> words)
{
    const auto isRefused = [](const std::string &word) { return word.empty() || !isUtf8(word); };
    words.erase(std::remove_if(words.begin(), words.end(), isRefused), words.end());
    const auto others = std::partition(words.begin(), words.end(),
                                       [](const std::string &word) { return isCorrectable(lettersOf(word)); });
    m_others.add({std::make_move_iterator(others), std::make_move_iterator(words.end())});
    words.erase(others, words.end());
    m_corrections.add(std::move(words));
}

bool Vocabulary::contains(std::string_view word) const
{
    return m_corrections.contains(word) || m_others.contains(word);
}

bool Vocabulary::hasPrefix(std::string_view start) const
{
    return m_corrections.hasPrefix(start) || m_others.hasPrefix(start);
}

std::vector<std::string> Vocabulary::startingWith(std::string_view start, std::size_t limit) const
{
    std::vector<std::string> words;
    m_corrections.appendStarting(start, limit, words);
    m_others.appendStarting(start, limit, words);
    return words;
}

std::vector<Correction> Vocabulary::corrections(std::string_view typed, bool asPrefix, std::size_t limit,
                                                std::size_t most) const
{
    const std::vector<unsigned> letters = lettersOf(typed);
    const std::size_t last = limit > 0 ? std::min(most, mostEditsOf(letters)) : 0;
    std::vector<Correction> corrections;
    // A walk with fewer edits is short, and saves the longer one when it finds enough.
    for (std::size_t edits = 1; edits <= last && corrections.size() < limit; ++edits) {
        const EditAutomaton automaton(letters, edits);
        CorrectionWalk walk(typed, automaton, asPrefix, limit);
        for (const WordTrie &trie : m_corrections.tries())
            walk.walk(trie);
        corrections.clear();
        for (const CorrectionWalk::Found &found : walk.found())
            corrections.push_back({found.word, static_cast<int>(found.edits), asPrefix});
    }
    return corrections;
}

} // namespace placesd
