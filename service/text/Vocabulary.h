// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "text/WordSet.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace placesd
{

/// What a typed word may stand for.
struct Correction
{
    std::string word;      ///< A word of the vocabulary, or the beginning of words.
    int edits = 0;         ///< Letters too many, too few, or wrong, and neighbours that changed places; 1 at least.
    bool isPrefix = false; ///< Stands for all words that start so.
};

/// Most edits by which a typed word is corrected: 0 below 4 letters, 1 below 8, else 2. Letters are code points. It is
/// 0 also for more than limits::CORRECTED_LETTERS, for a word with a digit, a sign or bytes that are not UTF-8, and for
/// one with a letter of a script that is written without spaces, where each letter means too much.
int mostEdits(std::string_view typed);

/// The words of an index, and the corrections of typed words. Words are search keys in UTF-8. It grows with the index;
/// no word is ever removed. Functions that are const may run at the same time; add() must run alone.
class Vocabulary
{
public:
    /// Adds words in any order; those that are known, empty or not UTF-8 are skipped. The time is that of a look-up for
    /// each known word and O(log n) for each new one, taken over many calls: one call of many rewrites all words, which
    /// takes 0.1 microseconds for each.
    void add(std::vector<std::string> words);

    [[nodiscard]] bool contains(std::string_view word) const;
    /// True when a word starts with `start`.
    [[nodiscard]] bool hasPrefix(std::string_view start) const;

    /// The corrections of a typed word by 1 to mostEdits() edits: the fewest edits first, then those with the same
    /// first letter, then the shorter ones, then bytewise. Only words of nothing but letters, in scripts written with
    /// spaces, are corrections.
    /// @param asPrefix the word may be the beginning of a longer one. The corrections are then beginnings of words, and
    /// none starts with another beginning that needs no more edits.
    /// @param limit most corrections that are given.
    [[nodiscard]] std::vector<Correction> corrections(std::string_view typed, bool asPrefix, std::size_t limit) const;

    /// Number of words.
    [[nodiscard]] std::size_t size() const { return m_corrections.size() + m_others.size(); }
    /// Bytes of memory that it takes.
    [[nodiscard]] std::size_t memory() const { return m_corrections.memory() + m_others.memory(); }

private:
    WordSet m_corrections; ///< Words that a typed word may stand for.
    WordSet m_others;
};

} // namespace placesd
