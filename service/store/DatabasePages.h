// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QFile>

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace placesd
{

/// The pages of a database file, with the newer versions from its write-ahead log. Reads without SQLite, which refuses
/// many damaged files (https://www.sqlite.org/fileformat2.html). Takes no locks and writes nothing. Not thread-safe.
class DatabasePages
{
public:
    using Number = std::uint32_t; ///< Starts at 1.

    /// Throws std::runtime_error when the file cannot be read.
    explicit DatabasePages(const std::string &path);

    /// Numbers of all possible pages, ascending.
    [[nodiscard]] std::vector<Number> numbers() const;
    /// Bytes of a page for data; the last ones may be reserved.
    [[nodiscard]] std::uint32_t usableSize() const { return m_usableSize; }
    /// The newest committed version of a page; empty for a missing page.
    std::string page(Number number);
    /// Pages on the free list, as far as it can be read.
    std::unordered_set<Number> freePages();

private:
    /// False when the header is missing and the page size unknown.
    bool readHeader();
    void readLog(bool isSizeKnown);
    /// Reads the frames of committed transactions in the log.
    void readFrames(std::string_view header);

    QFile m_file;
    QFile m_log;
    std::uint32_t m_pageSize;
    std::uint32_t m_usableSize;
    Number m_filePages = 0;
    Number m_count = 0;                         ///< From the newest transaction, else from the file size.
    std::unordered_map<Number, qint64> m_inLog; ///< Offset of the newest version of a page in the log.
};

} // namespace placesd
