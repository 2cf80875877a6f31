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
class XzReader;

/// Maximum size of a feature, document, record or token in bytes. It bounds the memory for reading.
constexpr std::size_t MAX_ITEM_SIZE = std::size_t(4) * 1024 * 1024;

/// A file, or standard input for the path "-", read once from beginning to end. Files compressed by gzip, bzip2, xz or
/// Zstandard and zip archives are detected by their first bytes and decompressed. One file of an archive is read:
/// doc.kml, else the first .kml, else the first with the extension of a format. A UTF-8 byte order mark is skipped.
class Input
{
public:
    explicit Input(const QString &path);
    ~Input();

    /// Why opening or reading failed; empty without an error.
    [[nodiscard]] QString problem() const;
    /// The file name with the format's extension: the path without a compression extension, or the name of the file in
    /// the archive.
    [[nodiscard]] QString name() const;
    /// The first bytes, at most 4096, for format detection. read() still returns them.
    [[nodiscard]] const QByteArray &head() const { return m_head; }
    /// Reads up to `size` bytes. Returns their number; 0 at the end and on an error.
    std::size_t read(char *buffer, std::size_t size);
    /// The part of the file that is read, from 0 to 1; 0 when the size is unknown.
    [[nodiscard]] double progress() const { return m_file.progress(); }

private:
    /// Reads after the head.
    std::size_t readOn(char *buffer, std::size_t size);

    const QString m_path;
    FileBytes m_file;
    // Null when the file is not in their formats.
    std::unique_ptr<ArchiveReader> m_archive;
    std::unique_ptr<XzReader> m_xz;
    QByteArray m_head;
    std::size_t m_position = 0; ///< Next byte in the head; its size when the head is read.
};

/// Decodes UTF-8. False for invalid UTF-8; the text is then undefined.
bool decodeUtf8(const QByteArray &bytes, QString &text);

} // namespace formats
