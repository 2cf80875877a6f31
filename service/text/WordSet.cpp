// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "text/WordSet.h"

#include <algorithm>
#include <iterator>
#include <numeric>

namespace placesd
{

namespace
{

/// A trie has at least this many times the words of the next one. A larger ratio makes additions slower, a smaller one
/// searches.
constexpr std::size_t SIZE_RATIO = 8;

} // namespace

void WordSet::add(std::vector<std::string> words)
{
    std::sort(words.begin(), words.end());
    words.erase(std::unique(words.begin(), words.end()), words.end());
    const auto isKnown = [this](const std::string &word) { return contains(word); };
    words.erase(std::remove_if(words.begin(), words.end(), isKnown), words.end());
    if (words.empty())
        return;
    m_tries.emplace_back(words);
    while (m_tries.size() > 1 && std::prev(m_tries.end(), 2)->size() < SIZE_RATIO * m_tries.back().size())
        mergeLastTwo();
}

void WordSet::mergeLastTwo()
{
    const auto first = std::prev(m_tries.end(), 2);
    const auto middle = static_cast<std::ptrdiff_t>(first->size());
    std::vector<std::string> words;
    words.reserve(first->size() + m_tries.back().size());
    first->appendTo(words);
    m_tries.back().appendTo(words);
    std::inplace_merge(words.begin(), words.begin() + middle, words.end());
    m_tries.pop_back();
    m_tries.back() = WordTrie(words);
}

bool WordSet::contains(std::string_view word) const
{
    return std::any_of(m_tries.begin(), m_tries.end(), [&](const WordTrie &trie) { return trie.contains(word); });
}

bool WordSet::hasPrefix(std::string_view start) const
{
    return std::any_of(m_tries.begin(), m_tries.end(), [&](const WordTrie &trie) { return trie.hasPrefix(start); });
}

void WordSet::appendStarting(std::string_view start, std::size_t end, std::vector<std::string> &words) const
{
    for (const WordTrie &trie : m_tries)
        trie.appendStarting(start, end, words);
}

std::size_t WordSet::size() const
{
    return std::accumulate(m_tries.begin(), m_tries.end(), std::size_t{0},
                           [](std::size_t sum, const WordTrie &trie) { return sum + trie.size(); });
}

std::size_t WordSet::memory() const
{
    return std::accumulate(m_tries.begin(), m_tries.end(), sizeof *this,
                           [](std::size_t sum, const WordTrie &trie) { return sum + trie.memory(); });
}

} // namespace placesd
