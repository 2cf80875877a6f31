// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "text/WordTrie.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace placesd
{

/// A growing set of words: a few tries, each much smaller than the previous one. New words form a new trie, which is
/// merged with the previous one when it is no longer much smaller; each word is written O(log n) times. Const functions
/// may run at the same time; add() must run alone.
class WordSet
{
public:
    /// @param words valid UTF-8, not empty, in any order; known words are skipped.
    void add(std::vector<std::string> words);

    [[nodiscard]] bool contains(std::string_view word) const;
    /// True when a word starts with `start`.
    [[nodiscard]] bool hasPrefix(std::string_view start) const;
    /// Appends words that start with `start`, in any order, until there are `end` words.
    void appendStarting(std::string_view start, std::size_t end, std::vector<std::string> &words) const;
    /// The tries; each word is in one of them.
    [[nodiscard]] const std::vector<WordTrie> &tries() const { return m_tries; }

    /// Number of words.
    [[nodiscard]] std::size_t size() const;
    /// Memory in bytes.
    [[nodiscard]] std::size_t memory() const;

private:
    void mergeLastTwo();

    std::vector<WordTrie> m_tries;
};

} // namespace placesd
