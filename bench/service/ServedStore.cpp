// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "ServedStore.h"

#include <QtCore/QFile>

namespace bench
{

ServedStore::ServedStore(const MadeStore &made, const QString &gazetteer, const QString &contacts)
    : m_made(made)
    , m_copy(made.path + QStringLiteral("-XXXXXX"))
    , m_service({QStringLiteral("--gazetteer"), gazetteer, QStringLiteral("--contacts"), contacts})
{
    m_service.stop();
    const QString copy = m_copy.filePath(QStringLiteral("places.db"));
    QFile::remove(m_service.path("places.db"));
    QFile::copy(made.path, copy);
    QFile::link(copy, m_service.path("places.db"));
    m_service.start();
}

void ServedStore::select() const
{
    qputenv("VELA_CHANNEL_DIR", path("").toLocal8Bit());
}

} // namespace bench
