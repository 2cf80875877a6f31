// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace placesd
{

/// Compares a typed word with other words letter by letter, for a walk through a trie. An edit inserts, removes or
/// replaces a letter, or swaps two neighbours; edits do not overlap (optimal string alignment). Letters are code
/// points.
class EditAutomaton
{
public:
    /// Maximum number of edits that can be counted.
    static constexpr std::size_t MOST_EDITS = 2;

    /// State after some letters of the other word. Bit i of a set is the prefix of i typed letters.
    struct State
    {
        /// By number of edits: the prefixes of the typed word within so many edits of the letters.
        std::array<std::uint64_t, MOST_EDITS + 1> reached{};
        /// The same one letter before, for swapped letters.
        std::array<std::uint64_t, MOST_EDITS> reachedBefore{};
        std::uint64_t last = 0; ///< Positions of the last letter in the typed word.
    };

    /// @param typed at most limits::CORRECTED_LETTERS letters.
    /// @param most maximum number of counted edits, up to MOST_EDITS.
    EditAutomaton(const std::vector<unsigned> &typed, std::size_t most);

    [[nodiscard]] State start() const;
    [[nodiscard]] State next(const State &state, unsigned letter) const;
    /// True when no continuation has few enough edits.
    [[nodiscard]] bool isDead(const State &state) const { return state.reached[m_most] == 0; }
    /// Edits between the typed word and the letters read; more than mostEdits() when there are too many.
    [[nodiscard]] std::size_t edits(const State &state) const;
    [[nodiscard]] std::size_t mostEdits() const { return m_most; }

private:
    [[nodiscard]] std::uint64_t placesOf(unsigned letter) const;

    std::array<std::uint64_t, 128> m_ascii{};                 ///< By letter: bit i is set when it is typed letter i.
    std::vector<std::pair<unsigned, std::uint64_t>> m_others; ///< Other typed letters with their bits.
    std::uint64_t m_whole;                                    ///< Bit of the whole typed word.
    std::size_t m_most;
};

} // namespace placesd
