// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "Input.h"

#include "ArchiveDevice.h"
#include "ArchiveReader.h"
#include "Format.h"
#include "XzReader.h"

#include <QtCore/QFileInfo>
#include <QtCore/QTextCodec>

#include <algorithm>
#include <cstring>

namespace formats
{

namespace
{

constexpr int HEAD_SIZE = 4096;
constexpr char BYTE_ORDER_MARK[] = "\xEF\xBB\xBF";

/// Rank of a file in an archive. Hidden files are metadata of some systems.
int rankOf(const QString &name)
{
    const QFileInfo file(name);
    const Format *format = formatByPath(name);
    if (!format || file.fileName().startsWith(QLatin1Char('.')))
        return 0;
    if (name == QLatin1String("doc.kml"))
        return ArchiveReader::BEST_RANK;
    return format == formatByName(QStringLiteral("kml")) ? 2 : 1;
}

} // namespace

Input::Input(const QString &path)
    : m_path(path)
    , m_file(path)
    , m_head(m_file.head())
{
    if (ArchiveReader::isArchive(m_head))
        m_archive = std::make_unique<ArchiveReader>(m_file, rankOf);
    else if (XzReader::isXz(m_head))
        m_xz = std::make_unique<XzReader>(m_file);
    m_head.resize(HEAD_SIZE);
    int count = 0;
    while (const std::size_t more = readOn(m_head.data() + count, static_cast<std::size_t>(HEAD_SIZE - count)))
        count += static_cast<int>(more);
    m_head.resize(count);
    if (m_head.startsWith(BYTE_ORDER_MARK))
        m_head.remove(0, static_cast<int>(std::strlen(BYTE_ORDER_MARK)));
}

Input::~Input() = default;

QString Input::problem() const
{
    // An error after the head is reported when reading reaches it.
    if (m_position < static_cast<std::size_t>(m_head.size()))
        return {};
    const QString problem = m_archive ? m_archive->problem() : m_xz ? m_xz->problem() : QString();
    return problem.isEmpty() ? m_file.problem() : problem;
}

QString Input::name() const
{
    return m_archive && !m_archive->member().isEmpty() ? m_archive->member() : withoutCompression(m_path);
}

std::size_t Input::read(char *buffer, std::size_t size)
{
    const std::size_t count = takeBytes(m_head, m_position, buffer, size);
    return count > 0 ? count : readOn(buffer, size);
}

std::size_t Input::readOn(char *buffer, std::size_t size)
{
    if (m_archive)
        return m_archive->read(buffer, size);
    return m_xz ? m_xz->read(buffer, size) : m_file.read(buffer, size);
}

bool decodeUtf8(const QByteArray &bytes, QString &text)
{
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    text = QTextCodec::codecForName("UTF-8")->toUnicode(bytes.constData(), bytes.size(), &state);
    return state.invalidChars == 0 && state.remainingChars == 0;
}

} // namespace formats
