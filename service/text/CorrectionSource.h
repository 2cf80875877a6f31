// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace placesd
{

/// A correction of a typed word.
struct Correction
{
    std::string word;      ///< A word of the vocabulary, or a prefix of words.
    int edits = 0;         ///< Number of edits, at least 1: letters inserted, removed, replaced, or swapped with a
                           ///< neighbour.
    bool isPrefix = false; ///< Matches all words with this prefix.
};

/// A source of corrections. Functions may run on several threads at the same time.
class CorrectionSource
{
public:
    CorrectionSource() = default;
    CorrectionSource(const CorrectionSource &) = default;
    CorrectionSource &operator=(const CorrectionSource &) = default;
    virtual ~CorrectionSource() = default;

    /// True when a word starts with `start`.
    [[nodiscard]] virtual bool hasPrefix(std::string_view start) const = 0;

    /// At most `limit` words that start with `start`, in any order.
    [[nodiscard]] virtual std::vector<std::string> startingWith(std::string_view start, std::size_t limit) const = 0;

    /// The corrections of a typed word by 1 to mostEdits() edits: fewest edits first, then the same first letter, then
    /// shorter words, then bytewise. Only words that consist of letters, in scripts with spaces, are corrections.
    /// @param asPrefix the word may be a prefix of a longer one. Corrections are then prefixes, and none starts with
    /// another one that needs as few edits or fewer.
    /// @param limit maximum number of corrections.
    /// @param most maximum number of edits; one edit takes a fifth of the time of two.
    [[nodiscard]] virtual std::vector<Correction> corrections(std::string_view typed, bool asPrefix, std::size_t limit,
                                                              std::size_t most) const = 0;
};

} // namespace placesd
