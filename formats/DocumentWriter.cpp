// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "DocumentWriter.h"

#include "TextWriter.h"

#include <places/Place.h>
#include <places/PlaceJson.h>

namespace formats
{

using namespace vela::platform::places;

namespace
{

QByteArray toDocument(const Place &place)
{
    return PlaceJson::write(place, PlaceJson::Texts::Unicode);
}

QByteArray toLatin1Document(const Place &place)
{
    return PlaceJson::write(place, PlaceJson::Texts::Latin1);
}

constexpr TextForm DOCUMENTS{toDocument, "", "\n", "\n"};
constexpr TextForm LATIN1_DOCUMENTS{toLatin1Document, "", "\n", "\n"};

/// Counts the places that lose characters.
class Latin1DocumentWriter : public TextWriter
{
public:
    explicit Latin1DocumentWriter(QIODevice &out)
        : TextWriter(out, LATIN1_DOCUMENTS)
    {}

    QString write(const Place &place) override
    {
        if (toDocument(place) != toLatin1Document(place))
            ++m_incomplete;
        return TextWriter::write(place);
    }
    QString note() const override
    {
        if (m_incomplete == 0)
            return {};
        return QStringLiteral("%1 %2 characters that ISO 8859-1 does not have; each became ?")
            .arg(m_incomplete)
            .arg(m_incomplete == 1 ? QStringLiteral("place has") : QStringLiteral("places have"));
    }

private:
    qint64 m_incomplete = 0;
};

} // namespace

std::unique_ptr<PlaceWriter> makeDocumentWriter(QIODevice &out)
{
    return std::make_unique<TextWriter>(out, DOCUMENTS);
}

std::unique_ptr<PlaceWriter> makeLatin1DocumentWriter(QIODevice &out)
{
    return std::make_unique<Latin1DocumentWriter>(out);
}

} // namespace formats
