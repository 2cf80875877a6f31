// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "XzReader.h"

#include "FileBytes.h"

namespace formats
{

namespace
{

constexpr std::uint64_t MAX_MEMORY = std::uint64_t(128) * 1024 * 1024;
constexpr char SIGNATURE[] = "\xFD"
                             "7zXZ";

} // namespace

bool XzReader::isXz(const QByteArray &head)
{
    return head.startsWith(QByteArray::fromRawData(SIGNATURE, sizeof SIGNATURE));
}

XzReader::XzReader(FileBytes &source)
    : m_source(source)
{
    if (const lzma_ret code = lzma_stream_decoder(&m_stream, MAX_MEMORY, LZMA_CONCATENATED); code != LZMA_OK)
        fail(code);
}

XzReader::~XzReader()
{
    lzma_end(&m_stream);
}

std::size_t XzReader::read(char *buffer, std::size_t size)
{
    m_stream.next_out = reinterpret_cast<std::uint8_t *>(buffer);
    m_stream.avail_out = size;
    while (m_stream.avail_out > 0 && !m_isEnded && m_problem.isEmpty()) {
        if (m_stream.avail_in == 0) {
            m_stream.next_in = m_buffer;
            m_stream.avail_in = m_source.read(reinterpret_cast<char *>(m_buffer), sizeof m_buffer);
        }
        const bool isLast = m_stream.avail_in == 0;
        const lzma_ret code = lzma_code(&m_stream, isLast ? LZMA_FINISH : LZMA_RUN);
        m_isEnded = code == LZMA_STREAM_END;
        if (code != LZMA_OK && !m_isEnded)
            fail(code);
    }
    return size - m_stream.avail_out;
}

void XzReader::fail(lzma_ret code)
{
    const bool isCut = code == LZMA_BUF_ERROR;
    const bool isTooLarge = code == LZMA_MEM_ERROR || code == LZMA_MEMLIMIT_ERROR;
    m_problem = m_source.problem();
    if (m_problem.isEmpty())
        m_problem = isTooLarge ? QStringLiteral("the xz file needs more than %1 MiB of memory").arg(MAX_MEMORY >> 20)
                    : isCut    ? QStringLiteral("the xz file is cut: it ends too early")
                               : QStringLiteral("the xz file is damaged");
}

} // namespace formats
