// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "text/WordTrie.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace placesd
{

/// A set of words that grows: a few tries, each much smaller than the one before. New words become a trie of their own,
/// which is merged with the one before it when it is no longer much smaller; a word is written O(log n) times.
/// Functions that are const may run at the same time; add() must run alone.
class WordSet
{
public:
    /// @param words valid UTF-8, none empty, in any order; those that are known are skipped.
    void add(std::vector<std::string> words);

    [[nodiscard]] bool contains(std::string_view word) const;
    /// True when a word starts with `start`.
    [[nodiscard]] bool hasPrefix(std::string_view start) const;
    /// Appends words that start with `start`, in any order. Ends when there are `end` words.
    void appendStarting(std::string_view start, std::size_t end, std::vector<std::string> &words) const;
    /// The words, each in one of the tries.
    [[nodiscard]] const std::vector<WordTrie> &tries() const { return m_tries; }

    /// Number of words.
    [[nodiscard]] std::size_t size() const;
    /// Bytes of memory that it takes.
    [[nodiscard]] std::size_t memory() const;

private:
    void mergeLastTwo();

    std::vector<WordTrie> m_tries;
};

} // namespace placesd
