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
    /// How much a file of a zip archive is wanted, by its name: the first of the most wanted ones is read; 0 for one
    /// that is not.
    using Rank = std::function<int(const QString &name)>;
    /// That of a file than which none is wanted more.
    static constexpr int BEST_RANK = 3;

    /// True for the first bytes of what this reads.
    static bool isArchive(const QByteArray &head);

    /// Begins to read. Where the source cannot go back, as in a pipe, the first file of a zip archive that is wanted at
    /// all is read.
    /// @param source is at its beginning, and outlives the reader.
    ArchiveReader(FileBytes &source, const Rank &rank);

    /// Why there is nothing to read, or why reading ended early; empty when nothing is wrong.
    [[nodiscard]] const QString &problem() const { return m_problem; }
    /// The name of the file in the zip archive; empty when there is no such archive.
    [[nodiscard]] const QString &member() const { return m_member; }
    /// Reads up to `size` bytes. Returns how many; 0 at the end and on a fault.
    std::size_t read(char *buffer, std::size_t size);

private:
    struct Free
    {
        void operator()(::archive *archive) const;
    };

    /// Begins at the beginning of the source.
    bool open();
    /// Goes to the next file; null at the end and on a fault.
    archive_entry *nextEntry();
    void findMember(const Rank &rank);
    /// Goes to the first file of at least this rank. Returns the best rank that was seen; it is less when there is
    /// none.
    int findRank(const Rank &rank, int atLeast);
    /// Keeps the reason of the last failure.
    void fail();

    FileBytes &m_source;
    const bool m_isZip;
    std::unique_ptr<::archive, Free> m_archive; ///< Null when there is nothing to read.
    char m_buffer[64 * 1024]; ///< Bytes of the source.
    QString m_member;
    QString m_problem;
};

} // namespace formats
