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

/// The pages of a database file as they are on the disk, and those that its write-ahead log has in place of them; read
/// without SQLite, which refuses many a damaged file (https://www.sqlite.org/fileformat2.html). Takes no lock and
/// writes nothing. Belongs to one thread.
class DatabasePages
{
public:
    using Number = std::uint32_t; ///< The first page is number 1.

    /// Throws std::runtime_error when the file cannot be read.
    explicit DatabasePages(const std::string &path);

    /// The pages that can be there, in their order.
    [[nodiscard]] std::vector<Number> numbers() const;
    /// Bytes of a page that hold data; the last ones of a page may be reserved.
    [[nodiscard]] std::uint32_t usableSize() const { return m_usableSize; }
    /// The bytes of a page, that of the newest transaction; empty for one that is not there.
    std::string page(Number number);
    /// The pages that the database says hold nothing, as far as that can be read.
    std::unordered_set<Number> freePages();

private:
    /// False when there is none, and the size of the pages is not known.
    bool readHeader();
    void readLog(bool isSizeKnown);
    /// Reads the frames of the log that belong to whole transactions.
    void readFrames(std::string_view header);

    QFile m_file;
    QFile m_log;
    std::uint32_t m_pageSize;
    std::uint32_t m_usableSize;
    Number m_filePages = 0;
    Number m_count = 0;                         ///< As the newest transaction says, or the file.
    std::unordered_map<Number, qint64> m_inLog; ///< Where the newest version of a page begins in the log.
};

} // namespace placesd
