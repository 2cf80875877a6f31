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

/// Maximum number of edits for correcting a typed word: 0 below 4 letters, 1 below 8, else 2. Letters are code points.
/// Also 0 for more than limits::CORRECTED_LETTERS letters, for a word with a digit, a sign or invalid UTF-8, and for a
/// letter of a script without spaces, where each letter means too much.
int mostEdits(std::string_view typed);

/// The words of an index, and corrections of typed words. Words are search keys in UTF-8. Words are added but never
/// removed. Const functions may run at the same time; add() must run alone.
class Vocabulary : public CorrectionSource
{
public:
    /// Adds words in any order; skips known, empty and invalid ones. The cost is a look-up per known word, and
    /// amortized O(log n) per new word. A single call may rewrite all words, at 0.1 microseconds per word.
    void add(std::vector<std::string> words);

    [[nodiscard]] bool contains(std::string_view word) const;
    [[nodiscard]] bool hasPrefix(std::string_view start) const override;
    [[nodiscard]] std::vector<std::string> startingWith(std::string_view start, std::size_t limit) const override;
    [[nodiscard]] std::vector<Correction> corrections(std::string_view typed, bool asPrefix, std::size_t limit,
                                                      std::size_t most) const override;

    /// Number of words.
    [[nodiscard]] std::size_t size() const { return m_corrections.size() + m_others.size(); }
    /// Memory in bytes.
    [[nodiscard]] std::size_t memory() const { return m_corrections.memory() + m_others.memory(); }

private:
    WordSet m_corrections; ///< Words that can be corrections.
    WordSet m_others;
};

} // namespace placesd
