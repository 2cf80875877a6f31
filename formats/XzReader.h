// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <cstddef>
#include <lzma.h>

namespace formats
{

class FileBytes;

/// Decompresses the xz format with at most 128 MiB of memory, which is enough for files of any preset of xz.
class XzReader
{
public:
    /// Detects the format by the first bytes.
    static bool isXz(const QByteArray &head);

    /// @param source is at its beginning, and outlives the reader.
    explicit XzReader(FileBytes &source);
    ~XzReader();
    XzReader(const XzReader &) = delete;
    XzReader &operator=(const XzReader &) = delete;

    /// Why reading failed; empty without an error.
    [[nodiscard]] const QString &problem() const { return m_problem; }
    /// Reads up to `size` bytes. Returns their number; 0 at the end and on an error.
    std::size_t read(char *buffer, std::size_t size);

private:
    void fail(lzma_ret code);

    FileBytes &m_source;
    lzma_stream m_stream = LZMA_STREAM_INIT;
    std::uint8_t m_buffer[64 * 1024]; ///< Bytes of the source.
    bool m_isEnded = false;
    QString m_problem;
};

} // namespace formats
