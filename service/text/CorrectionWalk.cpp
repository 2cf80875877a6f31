// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "text/CorrectionWalk.h"

#include "text/Utf8.h"

#include <algorithm>
#include <iterator>
#include <tuple>

namespace placesd
{

bool CorrectionWalk::Found::operator<(const Found &other) const
{
    return std::tie(edits, hasOtherStart, letters, word)
           < std::tie(other.edits, other.hasOtherStart, other.letters, other.word);
}

CorrectionWalk::CorrectionWalk(std::string_view typed, const EditAutomaton &automaton, bool asPrefix, std::size_t limit)
    : m_typed(typed)
    , m_automaton(automaton)
    , m_asPrefix(asPrefix)
    , m_limit(limit)
{}

void CorrectionWalk::walk(const WordTrie &trie)
{
    m_path.clear();
    walkSiblings(trie.roots(), m_automaton.start(), m_automaton.mostEdits() + 1);
}

/// @param before state after the letters of the path.
/// @param fewest edits of the best prefix on the path.
void CorrectionWalk::walkSiblings(std::string_view siblings, const State &before, std::size_t fewest)
{
    const std::size_t depth = m_path.size();
    while (!siblings.empty()) {
        walkNode(WordTrie::take(siblings), before, fewest);
        m_path.resize(depth);
    }
}

/// The recursion depth is limited by the typed letters and the edits: longer paths are dead.
void CorrectionWalk::walkNode(const WordTrie::Node &node, State state, std::size_t fewest)
{
    if (!readLabel(node.label, state, fewest))
        return;
    if (node.isWord && !m_asPrefix)
        keep(m_automaton.edits(state));
    walkSiblings(node.children, state, fewest);
}

/// Appends a label to the path. False when no correction can follow.
bool CorrectionWalk::readLabel(std::string_view label, State &state, std::size_t &fewest)
{
    for (std::size_t position = 0; position < label.size();) {
        const std::size_t start = position;
        state = m_automaton.next(state, codePointAt(label, position));
        if (m_automaton.isDead(state))
            return false;
        m_path += label.substr(start, position - start);
        if (!m_asPrefix)
            continue;
        if (const std::size_t edits = m_automaton.edits(state); edits < fewest) {
            keep(edits);
            fewest = edits;
        }
        // Only the typed word itself would be better, and it is not a correction.
        if (fewest <= 1)
            return false;
    }
    return true;
}

/// Keeps the path unless it is the typed word, has too many edits, or is worse than `limit` others.
void CorrectionWalk::keep(std::size_t edits)
{
    if (edits == 0 || edits > m_automaton.mostEdits())
        return;
    const auto letters =
        m_path.size() - static_cast<std::size_t>(std::count_if(m_path.begin(), m_path.end(), isContinuation));
    std::size_t first = 0;
    std::size_t typedFirst = 0;
    const bool hasOtherStart = codePointAt(m_path, first) != codePointAt(m_typed, typedFirst);
    m_found.insert({edits, hasOtherStart, letters, m_path});
    if (m_found.size() > m_limit)
        m_found.erase(std::prev(m_found.end()));
}

} // namespace placesd
