// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <cstddef>
#include <memory>

struct gzFile_s;

namespace formats
{

/// The bytes of a file, or of standard input under the name "-"; those that gzip (RFC 1952) compressed as they were
/// before. Its checksums are checked. Memory does not grow with the file.
class FileBytes
{
public:
    explicit FileBytes(const QString &path);

    /// Why there is nothing to read, or why reading ended early; empty when nothing is wrong.
    [[nodiscard]] const QString &problem() const { return m_problem; }
    /// The first bytes, at most 4096, to tell what they are; reading still begins with them.
    [[nodiscard]] const QByteArray &head() const { return m_head; }
    /// Reads up to `size` bytes. Returns how many; 0 at the end and on a fault.
    std::size_t read(char *buffer, std::size_t size);
    /// False where there is no way back to the beginning, as in a pipe.
    [[nodiscard]] bool canRewind() const { return m_canRewind; }
    /// Goes back to the beginning.
    void rewind();
    /// How much of the file is read, from 0 to 1; 0 when nobody knows how long it is.
    [[nodiscard]] double progress() const;

private:
    struct Close
    {
        void operator()(gzFile_s *file) const;
    };

    std::size_t readOn(char *buffer, std::size_t size);

    std::unique_ptr<gzFile_s, Close> m_file;
    QString m_problem;
    QByteArray m_head;
    std::size_t m_position = 0; ///< In the head; reading goes on in the file behind it.
    double m_size = 0;
    bool m_canRewind = false;
};

} // namespace formats
