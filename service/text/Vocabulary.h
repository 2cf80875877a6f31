// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "text/CorrectionSource.h"
#include "text/WordSet.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace placesd
{

/// Most edits by which a typed word is corrected: 0 below 4 letters, 1 below 8, else 2. Letters are code points. It is
/// 0 also for more than limits::CORRECTED_LETTERS, for a word with a digit, a sign or bytes that are not UTF-8, and for
/// one with a letter of a script that is written without spaces, where each letter means too much.
int mostEdits(std::string_view typed);

/// The words of an index, and the corrections of typed words. Words are search keys in UTF-8. It grows with the index;
/// no word is ever removed. Functions that are const may run at the same time; add() must run alone.
class Vocabulary : public CorrectionSource
{
public:
    /// Adds words in any order; those that are known, empty or not UTF-8 are skipped. The time is that of a look-up for
    /// each known word and O(log n) for each new one, taken over many calls: one call of many rewrites all words, which
    /// takes 0.1 microseconds for each.
    void add(std::vector<std::string> words);

    [[nodiscard]] bool contains(std::string_view word) const;
    [[nodiscard]] bool hasPrefix(std::string_view start) const override;
    [[nodiscard]] std::vector<std::string> startingWith(std::string_view start, std::size_t limit) const override;
    [[nodiscard]] std::vector<Correction> corrections(std::string_view typed, bool asPrefix, std::size_t limit,
                                                      std::size_t most) const override;

    /// Number of words.
    [[nodiscard]] std::size_t size() const { return m_corrections.size() + m_others.size(); }
    /// Bytes of memory that it takes.
    [[nodiscard]] std::size_t memory() const { return m_corrections.memory() + m_others.memory(); }

private:
    WordSet m_corrections; ///< Words that a typed word may stand for.
    WordSet m_others;
};

} // namespace placesd
