// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QString>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace placesd
{

class CorrectionSource;

/// A way in which a word of a term may be written in a text.
struct Spelling
{
    std::string text;     ///< Search key, UTF-8.
    bool isWhole = false; ///< False where it may be the beginning of a word.
    int edits = 0;        ///< Letters that the typed word was corrected by.
};

/// What a text has to have: for each word of a term one of its spellings.
class Wording
{
public:
    using Word = std::vector<Spelling>;

    Wording() = default;
    explicit Wording(std::vector<Word> words)
        : m_words(std::move(words))
    {}
    /// A term as it was typed. Each word may be the beginning of a longer one. Words beyond limits::TERM_WORDS are left
    /// out.
    static Wording of(const QString &term);

    [[nodiscard]] const std::vector<Word> &words() const { return m_words; }
    [[nodiscard]] bool isEmpty() const { return m_words.empty(); }

    /// Whether for each word `hasWord` accepts one of its spellings.
    template <typename HasWord>
    [[nodiscard]] bool passes(const HasWord &hasWord) const
    {
        return std::all_of(m_words.begin(), m_words.end(),
                           [&hasWord](const Word &word) { return std::any_of(word.begin(), word.end(), hasWord); });
    }
    /// Whether a key has the words.
    [[nodiscard]] bool isIn(std::string_view key) const;
    /// Expression for a full-text index. Not for an empty wording.
    [[nodiscard]] std::string expression() const;

private:
    std::vector<Word> m_words;
};

/// A reading of a term: a text has to fulfil one of the wordings.
struct Reading
{
    std::vector<Wording> wordings;
    bool inNames = false; ///< Whether only names are looked at, or all texts of a place.

    [[nodiscard]] std::string expression() const;
};

/// The first reading of a term: the words as typed start words of names.
Reading asTyped(const Wording &typed);

/// What a reading is chosen for.
struct ReadingSearch
{
    const CorrectionSource &vocabulary;
    /// Whether the search finds anything by a reading.
    std::function<bool(const Reading &reading)> finds;
    /// The number of places that have a word, as far as it matters which of two is rare.
    std::function<int64_t(const Reading &reading)> frequency;
};

/// The reading by which a search answers: the first of these that finds anything, or else the first.
/// 1. The words as typed start words of names.
/// 2. They start words of any text of a place.
/// 3. So they do when they are corrected, by as few letters as possible. Of a term of many words, only those are
///    corrected that are not in the vocabulary.
/// 4. So does the larger part of them, at least half, the rare ones first; nothing where the rarest of all finds
/// nothing.
Reading chooseReading(const Wording &typed, const ReadingSearch &search);

} // namespace placesd
