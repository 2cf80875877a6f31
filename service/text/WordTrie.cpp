// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "text/WordTrie.h"

#include "text/Utf8.h"

#include <algorithm>

namespace placesd
{

namespace
{

// The first byte of a node. If needed, it is followed by the length of the label; then come the label and, for a node
// with children, their size.
constexpr unsigned IS_WORD = 0x80;
constexpr unsigned HAS_CHILDREN = 0x40;
constexpr unsigned LENGTH_BITS = 0x3F;

/// Reads a number with 7 bits per byte, lowest first.
std::size_t takeNumber(const char *&bytes)
{
    std::size_t number = 0;
    for (unsigned shift = 0;; shift += 7) {
        const auto byte = static_cast<unsigned char>(*bytes++);
        number |= static_cast<std::size_t>(byte & 0x7FU) << shift;
        if (byte < 0x80)
            return number;
    }
}

/// Length of the common prefix of two words, in bytes; ends at a code point.
std::size_t sharedLength(std::string_view one, std::string_view other)
{
    const std::size_t most = std::min(one.size(), other.size());
    std::size_t length = 0;
    while (length < most && one[length] == other[length])
        ++length;
    while (length > 0 && length < one.size() && isContinuation(one[length]))
        --length;
    return length;
}

/// Writes the nodes from the last byte to the first: a node is complete only when its children are written.
class Builder
{
public:
    /// @param word sorts before all earlier words. Must outlive the builder.
    void add(std::string_view word)
    {
        close(sharedLength(m_word, word));
        if (m_open.back().depth == word.size())
            m_open.back().isWord = true;
        else
            m_open.push_back({word.size(), m_bytes.size(), true});
        m_word = word;
    }

    std::string finish()
    {
        close(0);
        std::reverse(m_bytes.begin(), m_bytes.end());
        m_bytes.shrink_to_fit();
        return std::move(m_bytes);
    }

private:
    /// A node on the path of the last word.
    struct Open
    {
        std::size_t depth; ///< End of its label in the word.
        std::size_t start; ///< Start of its children in the buffer.
        bool isWord;
    };

    /// Writes the nodes of the last word below `depth`, where a node then ends.
    void close(std::size_t depth)
    {
        while (m_open.back().depth > depth) {
            const Open node = m_open.back();
            m_open.pop_back();
            const std::size_t parent = std::max(depth, m_open.back().depth);
            if (parent > m_open.back().depth)
                m_open.push_back({parent, node.start, false});
            write(node, m_word.substr(parent, node.depth - parent));
        }
    }

    void write(const Open &node, std::string_view label)
    {
        const std::size_t children = m_bytes.size() - node.start;
        if (children > 0)
            putNumber(children);
        m_bytes.append(label.rbegin(), label.rend());
        const auto length = static_cast<unsigned>(std::min<std::size_t>(label.size(), LENGTH_BITS));
        if (length == LENGTH_BITS)
            putNumber(label.size() - length);
        m_bytes.push_back(
            static_cast<char>(length | (node.isWord ? IS_WORD : 0U) | (children > 0 ? HAS_CHILDREN : 0U)));
    }

    void putNumber(std::size_t number)
    {
        std::string bytes;
        for (; number >= 0x80; number >>= 7)
            bytes.push_back(static_cast<char>((number & 0x7FU) | 0x80U));
        bytes.push_back(static_cast<char>(number));
        m_bytes.append(bytes.rbegin(), bytes.rend());
    }

    std::string m_bytes; ///< Bytes of the closed nodes, last byte first.
    std::vector<Open> m_open{{0, 0, false}};
    std::string_view m_word; ///< The last word.
};

/// Appends the words below a node until there are `end`.
/// @param word the letters from the root to the node.
void appendBelow(std::string_view siblings, std::string word, std::size_t end, std::vector<std::string> &words)
{
    struct Level
    {
        std::string_view siblings;
        std::size_t depth; ///< Length of the common prefix of the siblings.
    };
    std::vector<Level> levels{{siblings, word.size()}};
    while (!levels.empty() && words.size() < end) {
        Level &level = levels.back();
        if (level.siblings.empty()) {
            levels.pop_back();
            continue;
        }
        const WordTrie::Node node = WordTrie::take(level.siblings);
        word.resize(level.depth);
        word += node.label;
        if (node.isWord)
            words.push_back(word);
        levels.push_back({node.children, word.size()});
    }
}

} // namespace

WordTrie::WordTrie(const std::vector<std::string> &words)
    : m_size(words.size())
{
    Builder builder;
    std::for_each(words.rbegin(), words.rend(), [&builder](const std::string &word) { builder.add(word); });
    m_nodes = builder.finish();
}

WordTrie::Node WordTrie::take(std::string_view &siblings)
{
    const char *next = siblings.data();
    const unsigned first = static_cast<unsigned char>(*next++);
    std::size_t length = first & LENGTH_BITS;
    if (length == LENGTH_BITS)
        length += takeNumber(next);
    Node node;
    node.isWord = (first & IS_WORD) != 0;
    node.label = {next, length};
    next += length;
    if (first & HAS_CHILDREN) {
        const std::size_t size = takeNumber(next);
        node.children = {next, size};
        next += size;
    }
    siblings.remove_prefix(static_cast<std::size_t>(next - siblings.data()));
    return node;
}

bool WordTrie::contains(std::string_view word) const
{
    for (std::string_view siblings = m_nodes; !siblings.empty();) {
        const Node node = take(siblings);
        if (!startsWith(word, node.label))
            continue;
        word.remove_prefix(node.label.size());
        if (word.empty())
            return node.isWord;
        siblings = node.children;
    }
    return false;
}

bool WordTrie::hasPrefix(std::string_view start) const
{
    for (std::string_view siblings = m_nodes; !siblings.empty();) {
        const Node node = take(siblings);
        if (startsWith(node.label, start))
            return true;
        if (!startsWith(start, node.label))
            continue;
        start.remove_prefix(node.label.size());
        siblings = node.children;
    }
    return false;
}

void WordTrie::appendTo(std::vector<std::string> &words) const
{
    appendBelow(m_nodes, {}, words.max_size(), words);
}

void WordTrie::appendStarting(std::string_view start, std::size_t end, std::vector<std::string> &words) const
{
    std::string path;
    for (std::string_view siblings = m_nodes; !siblings.empty() && words.size() < end;) {
        const Node node = take(siblings);
        const std::string_view rest = start.substr(path.size());
        if (startsWith(node.label, rest)) {
            path += node.label;
            if (node.isWord)
                words.push_back(path);
            return appendBelow(node.children, path, end, words);
        }
        if (!startsWith(rest, node.label))
            continue;
        path += node.label;
        siblings = node.children;
    }
}

} // namespace placesd
