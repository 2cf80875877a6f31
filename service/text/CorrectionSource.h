// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

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

/// Where typed words are corrected from. Functions may run on several threads at the same time.
class CorrectionSource
{
public:
    CorrectionSource() = default;
    CorrectionSource(const CorrectionSource &) = default;
    CorrectionSource &operator=(const CorrectionSource &) = default;
    virtual ~CorrectionSource() = default;

    /// True when a word starts with `start`.
    [[nodiscard]] virtual bool hasPrefix(std::string_view start) const = 0;

    /// The words that start with `start`, in any order, but no more than `limit`.
    [[nodiscard]] virtual std::vector<std::string> startingWith(std::string_view start, std::size_t limit) const = 0;

    /// The corrections of a typed word by 1 to mostEdits() edits: the fewest edits first, then those with the same
    /// first letter, then the shorter ones, then bytewise. Only words of nothing but letters, in scripts written with
    /// spaces, are corrections.
    /// @param asPrefix the word may be the beginning of a longer one. The corrections are then beginnings of words, and
    /// none starts with another beginning that needs no more edits.
    /// @param limit most corrections that are given.
    /// @param most edits that are tried; one takes a fifth of the time of two.
    [[nodiscard]] virtual std::vector<Correction> corrections(std::string_view typed, bool asPrefix, std::size_t limit,
                                                              std::size_t most) const = 0;
};

} // namespace placesd
