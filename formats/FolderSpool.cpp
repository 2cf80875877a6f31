// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "FolderSpool.h"

namespace formats
{

bool FolderSpool::hasRoom(const QString &folder) const
{
    return m_names.size() < MAX_FOLDERS || m_chains.contains(folder);
}

QString FolderSpool::add(const QString &folder, const QByteArray &text)
{
    if (!m_file.isOpen() && !m_file.open())
        return m_file.errorString();
    Chain &chain = m_chains[folder];
    const Header header{-1, text.size()};
    const qint64 position = m_end;
    if (!write(position, &header, sizeof header)
        || !write(position + qint64(sizeof header), text.constData(), text.size()))
        return m_file.errorString();
    if (chain.first < 0) {
        chain.first = position;
        m_names.append(folder);
    } else if (!write(chain.last, &position, sizeof position)) {
        return m_file.errorString();
    }
    chain.last = position;
    m_end = position + qint64(sizeof header) + text.size();
    return {};
}

QString FolderSpool::read(const QString &folder, const std::function<QString(const QByteArray &text)> &take)
{
    Header header{-1, 0};
    for (qint64 position = m_chains.value(folder).first; position >= 0; position = header.next) {
        if (!read(position, &header, sizeof header))
            return m_file.errorString();
        QByteArray text(static_cast<int>(header.size), Qt::Uninitialized);
        if (!read(position + qint64(sizeof header), text.data(), header.size))
            return m_file.errorString();
        if (QString problem = take(text); !problem.isEmpty())
            return problem;
    }
    return {};
}

bool FolderSpool::write(qint64 position, const void *bytes, qint64 size)
{
    return m_file.seek(position) && m_file.write(static_cast<const char *>(bytes), size) == size;
}

bool FolderSpool::read(qint64 position, void *bytes, qint64 size)
{
    return m_file.seek(position) && m_file.read(static_cast<char *>(bytes), size) == size;
}

} // namespace formats
