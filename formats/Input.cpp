// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "Input.h"

#include <QtCore/QTextCodec>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include <sys/stat.h>

namespace formats
{

namespace
{

constexpr std::size_t HEAD_SIZE = 4096;
constexpr char BYTE_ORDER_MARK[] = "\xEF\xBB\xBF";

double sizeOf(std::FILE *file)
{
    struct stat status = {};
    return ::fstat(::fileno(file), &status) == 0 ? static_cast<double>(status.st_size) : 0;
}

} // namespace

void Input::Close::operator()(std::FILE *file) const
{
    if (file != stdin)
        std::fclose(file);
}

Input::Input(const QString &path)
    : m_file(path == QLatin1String("-") ? stdin : std::fopen(path.toLocal8Bit().constData(), "rbe"))
{
    if (!m_file) {
        m_problem = qt_error_string(errno);
        return;
    }
    m_size = sizeOf(m_file.get());
    m_head.resize(HEAD_SIZE);
    m_head.resize(static_cast<int>(std::fread(m_head.data(), 1, HEAD_SIZE, m_file.get())));
    if (std::ferror(m_file.get()))
        m_problem = qt_error_string(errno);
    if (m_head.startsWith(BYTE_ORDER_MARK))
        m_head.remove(0, static_cast<int>(std::strlen(BYTE_ORDER_MARK)));
}

std::size_t Input::read(char *buffer, std::size_t size)
{
    const auto headSize = static_cast<std::size_t>(m_head.size());
    std::size_t count = 0;
    if (m_position < headSize) {
        count = std::min(size, headSize - m_position);
        std::memcpy(buffer, m_head.constData() + m_position, count);
    } else if (m_file && m_problem.isEmpty()) {
        count = std::fread(buffer, 1, size, m_file.get());
        if (count < size && std::ferror(m_file.get()))
            m_problem = qt_error_string(errno);
    }
    m_position += count;
    return count;
}

double Input::progress() const
{
    return m_size > 0 ? std::min(1.0, static_cast<double>(m_position) / m_size) : 0;
}

bool decodeUtf8(const QByteArray &bytes, QString &text)
{
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    text = QTextCodec::codecForName("UTF-8")->toUnicode(bytes.constData(), bytes.size(), &state);
    return state.invalidChars == 0 && state.remainingChars == 0;
}

} // namespace formats
