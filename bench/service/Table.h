// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

namespace bench
{

/// A table of texts, printed for a terminal or as Markdown. All columns except the first are right-aligned.
class Table
{
public:
    using Cells = std::vector<std::string>;

    explicit Table(Cells head)
        : m_rows{std::move(head)}
    {}

    void add(Cells row) { m_rows.push_back(std::move(row)); }
    void print(bool asMarkdown) const;

private:
    std::vector<Cells> m_rows; ///< The header row first.
};

/// A time for people: "87 us", "1.43 ms", "2.10 s". "-" for none.
std::string timeText(double microseconds);
/// A number with `decimals` decimal places; "-" for 0.
std::string numberText(double number, int decimals);

} // namespace bench
