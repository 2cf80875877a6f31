// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "KmzWriter.h"

#include "ArchiveDevice.h"
#include "KmlWriter.h"

namespace formats
{

namespace
{

class KmzWriter : public PlaceWriter
{
public:
    explicit KmzWriter(QIODevice &out)
        : m_archive(out, Compression::Zip, QStringLiteral("doc.kml"))
        , m_kml(makeKmlWriter(m_archive))
    {}

    QString begin() override { return m_archive.isOpen() ? m_kml->begin() : m_archive.errorString(); }
    QString write(const vela::platform::places::Place &place) override { return m_kml->write(place); }
    QString end() override
    {
        const QString problem = m_kml->end();
        return problem.isEmpty() ? m_archive.finish() : problem;
    }

private:
    ArchiveDevice m_archive;
    const std::unique_ptr<PlaceWriter> m_kml;
};

} // namespace

std::unique_ptr<PlaceWriter> makeKmzWriter(QIODevice &out)
{
    return std::make_unique<KmzWriter>(out);
}

} // namespace formats
