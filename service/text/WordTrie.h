// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace placesd
{

/// A set of words that never changes, as a tree of their common beginnings in one buffer: each node is followed by its
/// children, and says how long they are, so that a walk can skip them. The words of places take about 8 bytes each.
class WordTrie
{
public:
    /// A node of the tree. Its label continues the label of its parent. Labels are whole code points, and those of
    /// siblings start with different ones. The views end with the tree.
    struct Node
    {
        std::string_view label;    ///< In UTF-8, never empty.
        std::string_view children; ///< The first child and its siblings; empty for a leaf.
        bool isWord = false;       ///< A word ends behind the label.
    };

    /// @param words valid UTF-8, none empty, sorted bytewise, each once.
    explicit WordTrie(const std::vector<std::string> &words);

    /// The nodes that words start with.
    [[nodiscard]] std::string_view roots() const { return m_nodes; }
    /// Reads the first of `siblings`, which must not be empty, and removes it from them.
    static Node take(std::string_view &siblings);

    [[nodiscard]] bool contains(std::string_view word) const;
    /// True when a word starts with `start`.
    [[nodiscard]] bool hasPrefix(std::string_view start) const;
    /// Appends all words, sorted bytewise.
    void appendTo(std::vector<std::string> &words) const;
    /// Appends the words that start with `start`, sorted bytewise. Ends when there are `end` words.
    void appendStarting(std::string_view start, std::size_t end, std::vector<std::string> &words) const;

    /// Number of words.
    [[nodiscard]] std::size_t size() const { return m_size; }
    /// Bytes of memory that it takes.
    [[nodiscard]] std::size_t memory() const { return sizeof *this + m_nodes.capacity(); }

private:
    std::string m_nodes;
    std::size_t m_size;
};

} // namespace placesd
