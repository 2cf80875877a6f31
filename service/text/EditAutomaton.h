// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace placesd
{

/// Compares a typed word with others that are read letter by letter, as a walk through a trie does. An edit is a letter
/// too many, a letter too few, another letter, or two neighbours that changed places; none touches the result of
/// another (optimal string alignment). Letters are code points.
class EditAutomaton
{
public:
    /// Most edits that can be counted.
    static constexpr std::size_t MOST_EDITS = 2;

    /// After some letters of the other word. Bit i of a set stands for the first i typed letters.
    struct State
    {
        /// By number of edits: the beginnings of the typed word that the letters become with at most so many.
        std::array<std::uint64_t, MOST_EDITS + 1> reached{};
        /// The same one letter before, for letters that changed places.
        std::array<std::uint64_t, MOST_EDITS> reachedBefore{};
        std::uint64_t last = 0; ///< Where the last letter occurs in the typed word.
    };

    /// @param typed at most limits::CORRECTED_LETTERS.
    /// @param most most edits that are counted, up to MOST_EDITS.
    EditAutomaton(const std::vector<unsigned> &typed, std::size_t most);

    [[nodiscard]] State start() const;
    [[nodiscard]] State next(const State &state, unsigned letter) const;
    /// True when no word that continues so has few enough edits.
    [[nodiscard]] bool isDead(const State &state) const { return state.reached[m_most] == 0; }
    /// Edits between the typed word and the letters read; more than mostEdits() when there are too many.
    [[nodiscard]] std::size_t edits(const State &state) const;
    [[nodiscard]] std::size_t mostEdits() const { return m_most; }

private:
    [[nodiscard]] std::uint64_t placesOf(unsigned letter) const;

    std::array<std::uint64_t, 128> m_ascii{};                 ///< By letter: bit i where it is typed letter i.
    std::vector<std::pair<unsigned, std::uint64_t>> m_others; ///< Other typed letters, each with its bit.
    std::uint64_t m_whole;                                    ///< The bit of the whole typed word.
    std::size_t m_most;
};

} // namespace placesd
