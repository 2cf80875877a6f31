// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "text/EditAutomaton.h"
#include "text/WordTrie.h"

#include <cstddef>
#include <set>
#include <string>
#include <string_view>

namespace placesd
{

/// Walks through tries and keeps the best corrections of a typed word. It skips a branch when no word in it has few
/// enough edits, so it reads a small part of a trie.
class CorrectionWalk
{
public:
    /// A correction; better ones sort first.
    struct Found
    {
        std::size_t edits;
        bool hasOtherStart; ///< The first letter differs from the typed one.
        std::size_t letters;
        std::string word;

        bool operator<(const Found &other) const;
    };

    /// @param typed the typed word; must outlive the walk.
    /// @param automaton of the typed word; must outlive the walk.
    /// @param asPrefix find prefixes of words.
    /// @param limit maximum number of corrections, at least 1.
    CorrectionWalk(std::string_view typed, const EditAutomaton &automaton, bool asPrefix, std::size_t limit);

    void walk(const WordTrie &trie);
    /// The best corrections of all tries so far, the best first.
    [[nodiscard]] const std::set<Found> &found() const { return m_found; }

private:
    using State = EditAutomaton::State;

    void walkSiblings(std::string_view siblings, const State &before, std::size_t fewest);
    void walkNode(const WordTrie::Node &node, State state, std::size_t fewest);
    bool readLabel(std::string_view label, State &state, std::size_t &fewest);
    void keep(std::size_t edits);

    std::string_view m_typed;
    const EditAutomaton &m_automaton;
    bool m_asPrefix;
    std::size_t m_limit;
    std::string m_path; ///< The letters from the root of the trie.
    std::set<Found> m_found;
};

} // namespace placesd
