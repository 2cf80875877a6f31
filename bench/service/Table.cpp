// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "Table.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace bench
{

void Table::print(bool asMarkdown) const
{
    std::vector<std::size_t> widths(m_rows.front().size(), 1);
    for (const Cells &row : m_rows) {
        for (std::size_t i = 0; i < row.size(); ++i)
            widths[i] = std::max(widths[i], row[i].size());
    }
    const char *const separator = asMarkdown ? " | " : "  ";
    const auto printRow = [&](const Cells &row) {
        std::printf("%s%-*s", asMarkdown ? "| " : "", static_cast<int>(widths[0]), row[0].c_str());
        for (std::size_t i = 1; i < row.size(); ++i)
            std::printf("%s%*s", separator, static_cast<int>(widths[i]), row[i].c_str());
        std::printf(asMarkdown ? " |\n" : "\n");
    };
    printRow(m_rows.front());
    if (asMarkdown) {
        Cells rules;
        for (const std::size_t width : widths)
            rules.push_back(std::string(width, '-') + (rules.empty() ? "" : ":"));
        std::printf("|");
        for (const std::string &rule : rules)
            std::printf("-%s|", rule == rules.front() ? (rule + "-").c_str() : rule.c_str());
        std::printf("\n");
    }
    std::for_each(m_rows.begin() + 1, m_rows.end(), printRow);
    std::printf("\n");
}

std::string numberText(double number, int decimals)
{
    if (number == 0)
        return "-";
    std::array<char, 64> text = {};
    std::snprintf(text.data(), text.size(), "%.*f", decimals, number);
    return text.data();
}

std::string timeText(double microseconds)
{
    if (microseconds < 1e3)
        return microseconds == 0 ? "-" : numberText(microseconds, microseconds < 10 ? 1 : 0) + " us";
    return microseconds < 1e6 ? numberText(microseconds / 1e3, 2) + " ms" : numberText(microseconds / 1e6, 2) + " s";
}

} // namespace bench
