// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QIODevice>
#include <QtCore/QString>

#include <memory>

#include <sys/types.h>

struct archive;

namespace formats
{

/// How a file is compressed.
enum class Compression
{
    None,
    Gzip,
    Bzip2,
    Xz,
    Zstd,
    Zip, ///< Archive of one file.
};

/// The compression of a file by its extension: ".gz", ".bz2", ".xz", ".zst" or ".zip".
Compression compressionOf(const QString &path);
/// A file's name without such an extension.
QString withoutCompression(const QString &path);

/// Compresses the data that is written to it, and writes it to another device, which outlives this one. Memory does not
/// grow with the data. The output depends on the data only, not on the time. For one thread.
class ArchiveDevice : public QIODevice
{
public:
    /// Starts the output on a device that is open. On an error, this device is not open and errorString() has the
    /// reason.
    /// @param compression any but None.
    /// @param member name of the file in a zip archive; ignored for other compressions.
    ArchiveDevice(QIODevice &out, Compression compression, const QString &member = {});
    /// Without finish() the file stays incomplete.
    ~ArchiveDevice() override;

    /// Writes the end of the file and closes this device. Returns the error; empty on success.
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

    static ssize_t passOn(::archive *archive, void *self, const void *bytes, std::size_t size);
    bool begin(Compression compression, const QString &member);
    /// Sets the error string to the error of the last call. Returns false.
    bool fail();

    QIODevice &m_out;
    bool m_isEnded = false; ///< Nothing is written to the device any more: it failed, or the file is whole.
    std::unique_ptr<::archive, Free> m_archive;
};

} // namespace formats
