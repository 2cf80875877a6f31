// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <cstddef>
#include <zlib.h>

namespace formats
{

/// The bytes of a file, or of standard input for the path "-". Data in gzip format (RFC 1952) is decompressed and its
/// checksums are checked. Memory does not grow with the file.
class FileBytes
{
public:
    explicit FileBytes(const QString &path);
    ~FileBytes();
    FileBytes(const FileBytes &) = delete;
    FileBytes &operator=(const FileBytes &) = delete;

    /// Why opening or reading failed; empty without an error.
    [[nodiscard]] const QString &problem() const { return m_problem; }
    /// The first bytes, at most 4096. read() still returns them.
    [[nodiscard]] const QByteArray &head() const { return m_head; }
    /// Reads up to `size` bytes. Returns their number; 0 at the end and on an error.
    std::size_t read(char *buffer, std::size_t size);
    /// False for a pipe and other sources that cannot be read twice.
    [[nodiscard]] bool canRewind() const { return m_canRewind; }
    /// Goes back to the beginning.
    void rewind();
    /// The part of the file that is read, from 0 to 1; 0 when the size is unknown.
    [[nodiscard]] double progress() const;

private:
    /// Reads after the head.
    std::size_t readOn(char *buffer, std::size_t size);
    std::size_t copy(char *buffer, std::size_t size);
    std::size_t decompress(char *buffer, std::size_t size);
    /// Reads the next bytes of the file into the input buffer. False at the end and on an error.
    bool fill();

    int m_file = -1;
    QString m_problem;
    QByteArray m_head;
    std::size_t m_position = 0; ///< Next byte in the head; its size when the head is read.
    double m_size = 0;
    double m_filePosition = 0;
    bool m_canRewind = false;

    bool m_isGzip = false;
    bool m_isBetween = false; ///< Between two members of a gzip file.
    z_stream m_stream = {};   ///< Its input buffer also serves files that are not gzip.
    unsigned char m_buffer[64 * 1024];
};

/// Copies up to `size` bytes from a position in `bytes` and advances the position. Returns their number.
std::size_t takeBytes(const QByteArray &bytes, std::size_t &position, char *buffer, std::size_t size);

} // namespace formats
