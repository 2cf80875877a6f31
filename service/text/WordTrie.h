// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace placesd
{

/// An immutable set of words, as a prefix tree in one buffer: each node is followed by its children and stores their
/// size, so that a walk can skip them. Words of places take about 8 bytes each.
class WordTrie
{
public:
    /// A node of the tree. Its label continues the label of its parent. Labels consist of whole code points, and labels
    /// of siblings start with different ones. The views are valid during the lifetime of the tree.
    struct Node
    {
        std::string_view label;    ///< In UTF-8, never empty.
        std::string_view children; ///< The first child and its siblings; empty for a leaf.
        bool isWord = false;       ///< A word ends after the label.
    };

    /// @param words valid UTF-8, not empty, sorted bytewise, without duplicates.
    explicit WordTrie(const std::vector<std::string> &words);

    /// The nodes at which words start.
    [[nodiscard]] std::string_view roots() const { return m_nodes; }
    /// Reads the first of `siblings`, which must not be empty, and removes it.
    static Node take(std::string_view &siblings);

    [[nodiscard]] bool contains(std::string_view word) const;
    /// True when a word starts with `start`.
    [[nodiscard]] bool hasPrefix(std::string_view start) const;
    /// Appends all words, sorted bytewise.
    void appendTo(std::vector<std::string> &words) const;
    /// Appends the words that start with `start`, sorted bytewise, until there are `end` words.
    void appendStarting(std::string_view start, std::size_t end, std::vector<std::string> &words) const;

    /// Number of words.
    [[nodiscard]] std::size_t size() const { return m_size; }
    /// Memory in bytes.
    [[nodiscard]] std::size_t memory() const { return sizeof *this + m_nodes.capacity(); }

private:
    std::string m_nodes;
    std::size_t m_size;
};

} // namespace placesd
