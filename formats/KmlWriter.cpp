// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "KmlWriter.h"

#include "FlatFeature.h"
#include "FolderSpool.h"
#include "KmlText.h"
#include "Vocabulary.h"
#include "XmlText.h"

#include <places/Place.h>
#include <places/Tags.h>

#include <QtCore/QRegularExpression>
#include <QtCore/QSet>
#include <QtCore/QXmlStreamWriter>

#include <cmath>

namespace formats
{

using namespace vela::platform::places;

namespace
{

/// Maximum number of id attributes in a file. They must be unique, so the writer keeps them in memory.
constexpr int MAX_IDS = 100000;

/// Maximum length of a tag that becomes a folder.
constexpr int MAX_FOLDER_NAME = 256;

/// True for an NCName of at most 100 ASCII characters.
bool isNcName(const QString &text)
{
    static const QRegularExpression NAME(QStringLiteral("^[A-Za-z_][A-Za-z0-9_.-]{0,99}\\z"));
    return NAME.match(text).hasMatch();
}

/// True for a tag that the platform defines.
bool isPlatformTag(const QString &tag)
{
    return tag.startsWith(QLatin1String("lbs-")) || tag == Tags::MyLocation || tag == Tags::CurrentLocation;
}

/// The first tag of the user's own that XML stores unchanged; empty when there is none.
QString folderOf(const Place &place)
{
    for (int i = 0; i < place.tagCount(); ++i) {
        QString tag = place.tag(i);
        if (!isPlatformTag(tag) && tag.size() <= MAX_FOLDER_NAME && toXmlText({}, tag) == tag)
            return tag;
    }
    return {};
}

class KmlWriter : public PlaceWriter
{
public:
    explicit KmlWriter(QIODevice &out)
        : m_out(out)
    {}

    QString begin() override
    {
        return writeAll(m_out, "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                               "<kml xmlns=\"http://www.opengis.net/kml/2.2\"><Document>\n");
    }

    QString write(const Place &place) override
    {
        const QByteArray text = placemark(place);
        const QString folder = folderOf(place);
        return folder.isEmpty() || !m_spool.hasRoom(folder) ? writeAll(m_out, text) : m_spool.add(folder, text);
    }

    QString end() override
    {
        for (const QString &folder : m_spool.folders()) {
            QString problem = writeAll(m_out, "<Folder><name>" + folder.toHtmlEscaped().toUtf8() + "</name>\n");
            if (problem.isEmpty())
                problem = m_spool.read(folder, [this](const QByteArray &text) { return writeAll(m_out, text); });
            if (problem.isEmpty())
                problem = writeAll(m_out, "</Folder>\n");
            if (!problem.isEmpty())
                return problem;
        }
        return writeAll(m_out, "</Document></kml>\n");
    }

private:
    QByteArray placemark(const Place &place)
    {
        FlatFeature feature(place, toKmlText);
        QByteArray text;
        QXmlStreamWriter xml(&text);
        xml.writeStartElement(QStringLiteral("Placemark"));
        writeId(xml, feature);
        for (const auto &child : KML_CHILDREN) {
            if (const QString value = feature.take(QLatin1String(child.property)); !value.isEmpty())
                xml.writeTextElement(QLatin1String(child.element), value);
        }
        const QString description = feature.take(QLatin1String(vocabulary::DESCRIPTION));
        if (!description.isEmpty())
            xml.writeTextElement(QStringLiteral("description"), toKmlDescription(description));
        writeData(xml, feature);
        writePoint(xml, feature.position());
        xml.writeEndElement();
        return text + '\n';
    }

    /// Any other id, and an id that the file already has, stays in the rest.
    void writeId(QXmlStreamWriter &xml, FlatFeature &feature)
    {
        const QString id = feature.id();
        if (!isNcName(id) || m_ids.contains(id) || m_ids.size() >= MAX_IDS)
            return;
        m_ids.insert(id);
        xml.writeAttribute(QStringLiteral("id"), feature.takeId());
    }

    static void writeData(QXmlStreamWriter &xml, FlatFeature &feature)
    {
        xml.writeStartElement(QStringLiteral("ExtendedData"));
        const QStringList names = feature.names();
        for (const QString &name : names) {
            const bool isList = vocabulary::kinds().value(name) == vocabulary::Kind::Texts;
            const bool isOurs =
                name == QLatin1String(vocabulary::REST) || name.isEmpty() || toXmlText({}, name) != name;
            if (isOurs)
                continue;
            if (const QString value = feature.take(name); isList || !value.isEmpty())
                writeDatum(xml, name, value);
        }
        if (const QString rest = feature.rest(); !rest.isEmpty())
            writeDatum(xml, QLatin1String(vocabulary::REST), rest);
        xml.writeEndElement();
    }

    static void writeDatum(QXmlStreamWriter &xml, const QString &name, const QString &value)
    {
        xml.writeStartElement(QStringLiteral("Data"));
        xml.writeAttribute(QStringLiteral("name"), name);
        xml.writeTextElement(QStringLiteral("value"), value);
        xml.writeEndElement();
    }

    static void writePoint(QXmlStreamWriter &xml, const Coordinates &position)
    {
        if (!position.isValid())
            return;
        const bool hasAltitude = std::isfinite(position.altitude());
        xml.writeStartElement(QStringLiteral("Point"));
        if (hasAltitude)
            xml.writeTextElement(QStringLiteral("altitudeMode"), QStringLiteral("absolute"));
        xml.writeTextElement(QStringLiteral("coordinates"),
                             toXmlDecimal(position.longitude()) + QLatin1Char(',') + toXmlDecimal(position.latitude())
                                 + (hasAltitude ? QLatin1Char(',') + toXmlDecimal(position.altitude()) : QString()));
        xml.writeEndElement();
    }

    QIODevice &m_out;
    FolderSpool m_spool;
    QSet<QString> m_ids;
};

} // namespace

std::unique_ptr<PlaceWriter> makeKmlWriter(QIODevice &out)
{
    return std::make_unique<KmlWriter>(out);
}

} // namespace formats
