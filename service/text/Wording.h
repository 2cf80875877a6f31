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

/// A possible spelling of a word of a term.
struct Spelling
{
    std::string text;     ///< Search key, UTF-8.
    bool isWhole = false; ///< False when it may be a prefix of a word.
    int edits = 0;        ///< Number of corrected letters.
};

/// A conjunction: a text must contain one spelling of each word of a term.
class Wording
{
public:
    using Word = std::vector<Spelling>;

    Wording() = default;
    explicit Wording(std::vector<Word> words)
        : m_words(std::move(words))
    {}
    /// A term as typed. Each word may be a prefix of a longer word. Words beyond limits::TERM_WORDS are ignored.
    static Wording of(const QString &term);

    [[nodiscard]] const std::vector<Word> &words() const { return m_words; }
    [[nodiscard]] bool isEmpty() const { return m_words.empty(); }

    /// Whether `hasWord` accepts a spelling of each word.
    template <typename HasWord>
    [[nodiscard]] bool passes(const HasWord &hasWord) const
    {
        return std::all_of(m_words.begin(), m_words.end(),
                           [&hasWord](const Word &word) { return std::any_of(word.begin(), word.end(), hasWord); });
    }
    /// Whether a key contains the words.
    [[nodiscard]] bool isIn(std::string_view key) const;
    /// Full-text expression. Not for an empty wording.
    [[nodiscard]] std::string expression() const;

private:
    std::vector<Word> m_words;
};

/// A reading of a term: a text must match one of the wordings.
struct Reading
{
    std::vector<Wording> wordings;
    bool inNames = false; ///< Whether only names are searched, or all texts of a place.

    [[nodiscard]] std::string expression() const;
};

/// The first reading of a term: words of names start with the typed words.
Reading asTyped(const Wording &typed);

/// Callbacks of a search that chooses a reading.
struct ReadingSearch
{
    const CorrectionSource &vocabulary;
    /// Whether the search finds anything by a reading.
    std::function<bool(const Reading &reading)> finds;
    /// The number of places that contain a word, up to the limit for comparing rare words.
    std::function<int64_t(const Reading &reading)> frequency;
};

/// The reading of a search: the first one that finds anything, or else reading 1.
/// 1. Words of names start with the typed words.
/// 2. Words of any text of a place start with them.
/// 3. The same with corrected words, with as few edits as possible. In a term of many words only unknown words are
///    corrected.
/// 4. The same with a larger part of the words, at least half, rare ones first; no reading when the rarest word finds
///    nothing.
Reading chooseReading(const Wording &typed, const ReadingSearch &search);

} // namespace placesd
