// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "FileBytes.h"

#include <QtCore/QFile>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <zlib.h>

namespace formats
{

namespace
{

constexpr std::size_t HEAD_SIZE = 4096;
constexpr unsigned BUFFER_SIZE = 64 * 1024;

/// A descriptor of the file; -1 on an error. Standard input is no copy, so that a program can replace it while a read
/// waits.
int openFile(const QString &path)
{
    if (path == QLatin1String("-"))
        return STDIN_FILENO;
    return ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
}

double sizeOf(int file)
{
    struct stat status = {};
    return ::fstat(file, &status) == 0 ? static_cast<double>(status.st_size) : 0;
}

/// The error of the last read; empty without an error.
QString faultOf(gzFile_s *file)
{
    int code = Z_OK;
    const char *reason = ::gzerror(file, &code);
    switch (code) {
    case Z_OK:
    case Z_STREAM_END:
        return {};
    case Z_ERRNO:
        return qt_error_string(errno);
    case Z_BUF_ERROR:
        return QStringLiteral("the gzip file is cut: it ends too early");
    default:
        return QStringLiteral("the gzip file is damaged: %1")
            .arg(QString::fromUtf8(reason).section(QLatin1String(": "), 1));
    }
}

} // namespace

void FileBytes::Close::operator()(gzFile_s *file) const
{
    const int kept = isStandardInput ? ::fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 0) : -1;
    ::gzclose_r(file);
    if (kept >= 0) {
        ::dup2(kept, STDIN_FILENO);
        ::close(kept);
    }
}

FileBytes::FileBytes(const QString &path)
{
    const int file = openFile(path);
    if (file >= 0) {
        m_file.get_deleter().isStandardInput = file == STDIN_FILENO;
        m_file.reset(::gzdopen(file, "rb"));
    }
    if (!m_file) {
        m_problem = qt_error_string(errno);
        if (file > STDIN_FILENO)
            ::close(file);
        return;
    }
    m_size = sizeOf(file);
    m_canRewind = ::lseek(file, 0, SEEK_CUR) >= 0;
    ::gzbuffer(m_file.get(), BUFFER_SIZE);
    m_head.resize(HEAD_SIZE);
    m_head.resize(static_cast<int>(readOn(m_head.data(), HEAD_SIZE)));
}

std::size_t FileBytes::read(char *buffer, std::size_t size)
{
    const auto headSize = static_cast<std::size_t>(m_head.size());
    if (m_position >= headSize)
        return readOn(buffer, size);
    const std::size_t count = std::min(size, headSize - m_position);
    std::memcpy(buffer, m_head.constData() + m_position, count);
    m_position += count;
    return count;
}

std::size_t FileBytes::readOn(char *buffer, std::size_t size)
{
    if (!m_file || !m_problem.isEmpty())
        return 0;
    const int count = ::gzread(m_file.get(), buffer, static_cast<unsigned>(std::min(size, std::size_t(1) << 20)));
    if (count < static_cast<int>(size))
        m_problem = faultOf(m_file.get());
    return count > 0 ? static_cast<std::size_t>(count) : 0;
}

void FileBytes::rewind()
{
    if (m_canRewind && ::gzseek(m_file.get(), m_head.size(), SEEK_SET) >= 0)
        m_position = 0;
}

double FileBytes::progress() const
{
    return m_file && m_size > 0 ? std::min(1.0, static_cast<double>(::gzoffset(m_file.get())) / m_size) : 0;
}

} // namespace formats
