// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "text/EditAutomaton.h"

#include "Limits.h"

namespace placesd
{

static_assert(limits::CORRECTED_LETTERS < 64, "a state has a bit for each letter and one for the start");

EditAutomaton::EditAutomaton(const std::vector<unsigned> &typed, std::size_t most)
    : m_whole(std::uint64_t{1} << typed.size())
    , m_most(most)
{
    std::uint64_t place = 1;
    for (const unsigned letter : typed) {
        if (letter < m_ascii.size())
            m_ascii[letter] |= place;
        else
            m_others.emplace_back(letter, place);
        place <<= 1;
    }
}

EditAutomaton::State EditAutomaton::start() const
{
    State state;
    state.reached[0] = 1;
    for (std::size_t edits = 1; edits <= m_most; ++edits)
        state.reached[edits] = state.reached[edits - 1] | (state.reached[edits - 1] << 1);
    return state;
}

EditAutomaton::State EditAutomaton::next(const State &state, unsigned letter) const
{
    const std::uint64_t here = placesOf(letter);
    const std::uint64_t all = m_whole | (m_whole - 1);
    State next;
    next.reached[0] = ((state.reached[0] & here) << 1) & all;
    for (std::size_t edits = 1; edits <= m_most; ++edits) {
        const std::uint64_t same = (state.reached[edits] & here) << 1;
        const std::uint64_t tooMany = state.reached[edits - 1];
        const std::uint64_t other = state.reached[edits - 1] << 1;
        const std::uint64_t tooFew = next.reached[edits - 1] << 1;
        const std::uint64_t swapped = (((state.reachedBefore[edits - 1] & here) << 1) & state.last) << 1;
        next.reached[edits] = (same | tooMany | other | tooFew | swapped) & all;
        next.reachedBefore[edits - 1] = state.reached[edits - 1];
    }
    next.last = here;
    return next;
}

std::size_t EditAutomaton::edits(const State &state) const
{
    std::size_t edits = 0;
    while (edits <= m_most && (state.reached[edits] & m_whole) == 0)
        ++edits;
    return edits;
}

std::uint64_t EditAutomaton::placesOf(unsigned letter) const
{
    if (letter < m_ascii.size())
        return m_ascii[letter];
    std::uint64_t places = 0;
    for (const auto &[other, place] : m_others)
        places |= other == letter ? place : 0;
    return places;
}

} // namespace placesd
