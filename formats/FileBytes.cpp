// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "FileBytes.h"

#include <QtCore/QFile>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace formats
{

namespace
{

constexpr std::size_t HEAD_SIZE = 4096;
constexpr unsigned char GZIP[] = {0x1F, 0x8B};
/// The largest window; adding 16 selects the gzip format.
constexpr int WINDOW_BITS = MAX_WBITS + 16;

double sizeOf(int file)
{
    struct stat status = {};
    return ::fstat(file, &status) == 0 ? static_cast<double>(status.st_size) : 0;
}

} // namespace

FileBytes::FileBytes(const QString &path)
    : m_file(path == QLatin1String("-") ? STDIN_FILENO
                                        : ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC))
{
    if (m_file < 0) {
        m_problem = qt_error_string(errno);
        return;
    }
    m_size = sizeOf(m_file);
    m_canRewind = ::lseek(m_file, 0, SEEK_CUR) == 0;
    while (m_stream.avail_in < sizeof GZIP && fill()) {
    }
    m_isGzip = m_stream.avail_in >= sizeof GZIP && std::memcmp(m_buffer, GZIP, sizeof GZIP) == 0;
    if (m_isGzip && ::inflateInit2(&m_stream, WINDOW_BITS) != Z_OK)
        m_problem = QStringLiteral("there is not enough memory to decompress it");
    m_head.resize(HEAD_SIZE);
    std::size_t count = 0;
    while (const std::size_t more = readOn(m_head.data() + count, HEAD_SIZE - count))
        count += more;
    m_head.resize(static_cast<int>(count));
}

std::size_t takeBytes(const QByteArray &bytes, std::size_t &position, char *buffer, std::size_t size)
{
    const std::size_t count = std::min(size, static_cast<std::size_t>(bytes.size()) - position);
    std::memcpy(buffer, bytes.constData() + position, count);
    position += count;
    return count;
}

FileBytes::~FileBytes()
{
    if (m_isGzip)
        ::inflateEnd(&m_stream);
    if (m_file > STDIN_FILENO)
        ::close(m_file);
}

std::size_t FileBytes::read(char *buffer, std::size_t size)
{
    const std::size_t count = takeBytes(m_head, m_position, buffer, size);
    return count > 0 ? count : readOn(buffer, size);
}

bool FileBytes::fill()
{
    // Bytes remain at the front of the buffer only while the format is detected.
    const std::size_t left = m_stream.avail_in;
    const ssize_t count = ::read(m_file, m_buffer + left, sizeof m_buffer - left);
    if (count < 0)
        m_problem = qt_error_string(errno);
    if (count <= 0)
        return false;
    m_stream.next_in = m_buffer;
    m_stream.avail_in = static_cast<unsigned>(left + static_cast<std::size_t>(count));
    m_filePosition += static_cast<double>(count);
    return true;
}

std::size_t FileBytes::readOn(char *buffer, std::size_t size)
{
    if (size == 0 || m_file < 0 || !m_problem.isEmpty())
        return 0;
    return m_isGzip ? decompress(buffer, size) : copy(buffer, size);
}

std::size_t FileBytes::copy(char *buffer, std::size_t size)
{
    if (m_stream.avail_in == 0 && !fill())
        return 0;
    const auto count = static_cast<unsigned>(std::min<std::size_t>(size, m_stream.avail_in));
    std::memcpy(buffer, m_stream.next_in, count);
    m_stream.next_in += count;
    m_stream.avail_in -= count;
    return count;
}

std::size_t FileBytes::decompress(char *buffer, std::size_t size)
{
    const auto room = static_cast<unsigned>(std::min<std::size_t>(size, sizeof m_buffer));
    m_stream.next_out = reinterpret_cast<unsigned char *>(buffer);
    m_stream.avail_out = room;
    while (m_stream.avail_out == room) {
        if (m_stream.avail_in == 0 && !fill()) {
            if (m_problem.isEmpty() && !m_isBetween)
                m_problem = QStringLiteral("the gzip file is cut: it ends too early");
            return 0;
        }
        if (m_isBetween && *m_stream.next_in != GZIP[0])
            return 0; // padding after the last member
        if (m_isBetween)
            ::inflateReset(&m_stream);
        const int code = ::inflate(&m_stream, Z_NO_FLUSH);
        m_isBetween = code == Z_STREAM_END;
        if (code != Z_OK && code != Z_BUF_ERROR && !m_isBetween) {
            m_problem = QStringLiteral("the gzip file is damaged");
            if (m_stream.msg)
                m_problem += QStringLiteral(": ") + QString::fromLatin1(m_stream.msg);
            break;
        }
    }
    return room - m_stream.avail_out;
}

void FileBytes::rewind()
{
    if (!m_canRewind || ::lseek(m_file, 0, SEEK_SET) < 0)
        return;
    m_stream.avail_in = 0;
    m_filePosition = 0;
    m_isBetween = false;
    if (m_isGzip)
        ::inflateReset(&m_stream);
    char skipped[HEAD_SIZE];
    for (auto left = static_cast<std::size_t>(m_head.size()); left > 0;) {
        const std::size_t count = readOn(skipped, left);
        if (count == 0)
            return;
        left -= count;
    }
    m_position = 0;
}

double FileBytes::progress() const
{
    return m_size > 0 ? std::min(1.0, m_filePosition / m_size) : 0;
}

} // namespace formats
