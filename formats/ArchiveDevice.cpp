// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "ArchiveDevice.h"

#include <QtCore/QFileInfo>

#include <archive.h>
#include <archive_entry.h>

#include <sys/stat.h>

namespace formats
{

namespace
{

constexpr mode_t MEMBER_MODE = 0644;

struct CompressionEnding
{
    const char *ending;
    Compression compression;
    int (*addFilter)(::archive *archive);
};

constexpr CompressionEnding ENDINGS[] = {
    {"gz", Compression::Gzip, archive_write_add_filter_gzip},
    {"bz2", Compression::Bzip2, archive_write_add_filter_bzip2},
    {"xz", Compression::Xz, archive_write_add_filter_xz},
    {"zst", Compression::Zstd, archive_write_add_filter_zstd},
    {"zip", Compression::Zip, archive_write_add_filter_none},
};

bool addEntry(::archive *archive, const QString &member)
{
    const std::unique_ptr<archive_entry, void (*)(archive_entry *)> entry(archive_entry_new(), archive_entry_free);
    if (!entry)
        return false;
    archive_entry_set_pathname_utf8(entry.get(), member.toUtf8().constData());
    archive_entry_set_filetype(entry.get(), S_IFREG);
    archive_entry_set_perm(entry.get(), MEMBER_MODE);
    // A name that the locale cannot represent causes a warning only.
    return archive_write_header(archive, entry.get()) >= ARCHIVE_WARN;
}

} // namespace

Compression compressionOf(const QString &path)
{
    const QString suffix = QFileInfo(path).suffix().toLower();
    for (const CompressionEnding &each : ENDINGS) {
        if (suffix == QLatin1String(each.ending))
            return each.compression;
    }
    return Compression::None;
}

QString withoutCompression(const QString &path)
{
    return compressionOf(path) == Compression::None ? path : path.left(path.lastIndexOf(QLatin1Char('.')));
}

void ArchiveDevice::Free::operator()(::archive *archive) const
{
    archive_write_free(archive);
}

/// Never reports an error to libarchive, because it leaks the state of a failed compression. Bytes after a failure are
/// dropped.
ssize_t ArchiveDevice::passOn(::archive * /*archive*/, void *self, const void *bytes, std::size_t size)
{
    ArchiveDevice &device = *static_cast<ArchiveDevice *>(self);
    const auto count = static_cast<qint64>(size);
    if (!device.m_isEnded && device.m_out.write(static_cast<const char *>(bytes), count) != count) {
        device.setErrorString(device.m_out.errorString());
        device.m_isEnded = true;
    }
    return static_cast<ssize_t>(size);
}

ArchiveDevice::ArchiveDevice(QIODevice &out, Compression compression, const QString &member)
    : m_out(out)
    , m_archive(archive_write_new())
{
    if (m_archive && (begin(compression, member) || fail()))
        open(WriteOnly | Unbuffered);
}

ArchiveDevice::~ArchiveDevice()
{
    m_isEnded = true;
    m_archive.reset();
}

bool ArchiveDevice::begin(Compression compression, const QString &member)
{
    ::archive *archive = m_archive.get();
    for (const CompressionEnding &each : ENDINGS) {
        if (each.compression == compression && each.addFilter(archive) < ARCHIVE_WARN)
            return false;
    }
    const bool isZip = compression == Compression::Zip;
    const int format = isZip ? archive_write_set_format_zip(archive) : archive_write_set_format_raw(archive);
    // Without a time stamp the output depends on the data only.
    if (compression == Compression::Gzip)
        archive_write_set_filter_option(archive, "gzip", "timestamp", nullptr);
    if (isZip)
        archive_write_set_format_option(archive, "zip", "hdrcharset", "UTF-8");
    // No padding at the end.
    archive_write_set_bytes_in_last_block(archive, 1);
    return format == ARCHIVE_OK && archive_write_open(archive, this, nullptr, passOn, nullptr) == ARCHIVE_OK
           && addEntry(archive, isZip ? member : QStringLiteral("data"));
}

bool ArchiveDevice::fail()
{
    const char *reason = archive_error_string(m_archive.get());
    setErrorString(reason ? QString::fromUtf8(reason) : QStringLiteral("compression failed"));
    return false;
}

QString ArchiveDevice::finish()
{
    QString problem;
    if (!isOpen() || m_isEnded || (archive_write_close(m_archive.get()) != ARCHIVE_OK && !fail()) || m_isEnded)
        problem = errorString();
    m_isEnded = true;
    close();
    return problem;
}

qint64 ArchiveDevice::writeData(const char *data, qint64 size)
{
    const la_ssize_t written = archive_write_data(m_archive.get(), data, static_cast<std::size_t>(size));
    if (written == size && !m_isEnded)
        return size;
    if (!m_isEnded)
        fail();
    return -1;
}

} // namespace formats
