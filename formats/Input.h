// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "FileBytes.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <cstddef>
#include <memory>

namespace formats
{

class ArchiveReader;

/// Most bytes that one feature, document, record or token of a file may take. It bounds the memory that reading needs.
constexpr std::size_t MAX_ITEM_SIZE = std::size_t(4) * 1024 * 1024;

/// A file, or standard input under the name "-", read once from beginning to end. What gzip, bzip2, xz or Zstandard
/// compressed, or a zip archive holds, is told by its first bytes and read as it was before. Of an archive one file is
/// read: doc.kml, else the first .kml, else the first whose name tells a format. A UTF-8 byte order mark is passed
/// over.
class Input
{
public:
    explicit Input(const QString &path);
    ~Input();

    /// Why there is nothing to read, or why reading ended early; empty when nothing is wrong.
    [[nodiscard]] QString problem() const;
    /// The name that tells the format: the file's own without the ending of a compression, or that of the file in the
    /// archive.
    [[nodiscard]] QString name() const;
    /// The first bytes, at most 4096, to tell the format by; reading still begins with them.
    [[nodiscard]] const QByteArray &head() const { return m_head; }
    /// Reads up to `size` bytes. Returns how many; 0 at the end and on a fault.
    std::size_t read(char *buffer, std::size_t size);
    /// How much of the file is read, from 0 to 1; 0 when nobody knows how long it is.
    [[nodiscard]] double progress() const { return m_file.progress(); }

private:
    /// Reads what is behind the head.
    std::size_t readOn(char *buffer, std::size_t size);

    const QString m_path;
    FileBytes m_file;
    std::unique_ptr<ArchiveReader> m_archive; ///< Null when the file is none.
    QByteArray m_head;
    std::size_t m_position = 0; ///< In the head; reading goes on in the file behind it.
};

/// Text of UTF-8 bytes. False, and the text is of no use, when they are none.
bool decodeUtf8(const QByteArray &bytes, QString &text);

} // namespace formats
