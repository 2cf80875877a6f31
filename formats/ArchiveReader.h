// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <cstddef>
#include <functional>
#include <memory>

struct archive;
struct archive_entry;

namespace formats
{

class FileBytes;

/// Undoes what bzip2, xz and Zstandard did to bytes, or reads one file of a zip archive. Bytes come as they are needed
/// and archives are never listed in memory.
class ArchiveReader
{
public:
    /// Rank of a file in a zip archive by its name: the first file of the highest rank is read. 0 excludes a file.
    using Rank = std::function<int(const QString &name)>;
    /// The highest rank.
    static constexpr int BEST_RANK = 3;

    /// Detects the supported formats by the first bytes.
    static bool isArchive(const QByteArray &head);

    /// Opens the archive. When the source cannot be rewound, the first file of any rank but 0 is read.
    /// @param source is at its beginning, and outlives the reader.
    ArchiveReader(FileBytes &source, const Rank &rank);

    /// Why opening or reading failed; empty without an error.
    [[nodiscard]] const QString &problem() const { return m_problem; }
    /// Name of the file in the zip archive; empty for other formats.
    [[nodiscard]] const QString &member() const { return m_member; }
    /// Reads up to `size` bytes. Returns their number; 0 at the end and on an error.
    std::size_t read(char *buffer, std::size_t size);

private:
    struct Free
    {
        void operator()(::archive *archive) const;
    };

    /// Opens an archive at the start of the source.
    bool open();
    /// Goes to the next file; null at the end and on an error.
    archive_entry *nextEntry();
    void findMember(const Rank &rank);
    /// Goes to the first file of at least this rank. Returns the best rank that was seen; it is less when there is
    /// none.
    int findRank(const Rank &rank, int atLeast);
    /// Keeps the error of the last call.
    void fail();

    FileBytes &m_source;
    const bool m_isZip;
    std::unique_ptr<::archive, Free> m_archive; ///< Null for empty data.
    char m_buffer[64 * 1024];                   ///< Bytes of the source.
    QString m_member;
    QString m_problem;
};

} // namespace formats
