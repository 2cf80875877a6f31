// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QIODevice>
#include <QtCore/QString>

#include <memory>

struct archive;

namespace formats
{

/// How bytes are compressed on their way to a file.
enum class Compression
{
    None,
    Gzip,
    Bzip2,
    Xz,
    Zstd,
    Zip, ///< An archive of one file.
};

/// The compression that the ending of a file's name stands for: ".gz", ".bz2", ".xz", ".zst" or ".zip".
Compression compressionOf(const QString &path);
/// A file's name without such an ending.
QString withoutCompression(const QString &path);

/// Compresses what is written to it and passes that on to another device, which outlives it. Memory does not grow with
/// what is written. The same bytes give the same result at any time. For one thread.
class ArchiveDevice : public QIODevice
{
public:
    /// Begins to write to a device that is open. When that fails, this one is not open, and errorString() says why.
    /// @param compression any but None.
    /// @param member name of the file in a zip archive; else without effect.
    ArchiveDevice(QIODevice &out, Compression compression, const QString &member = {});
    /// Writes no end: without finish() the file is not whole.
    ~ArchiveDevice() override;

    /// Writes the end; nothing can be written after it. Returns what went wrong; empty when nothing did.
    [[nodiscard]] QString finish();

    [[nodiscard]] bool isSequential() const override { return true; }

protected:
    qint64 readData(char * /*data*/, qint64 /*size*/) override { return -1; }
    qint64 writeData(const char *data, qint64 size) override;

private:
    struct Free
    {
        void operator()(::archive *archive) const;
    };

    bool begin(Compression compression, const QString &member);
    /// Keeps the reason of the last failure. Returns false.
    bool fail();

    QIODevice &m_out;
    std::unique_ptr<::archive, Free> m_archive;
};

} // namespace formats
