// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "GpxWriter.h"

#include "FlatFeature.h"
#include "Gpx.h"
#include "XmlText.h"

#include <QtCore/QDate>
#include <QtCore/QRegularExpression>
#include <QtCore/QXmlStreamWriter>

#include <cmath>

namespace formats
{

using namespace vela::platform::places;

namespace
{

bool isAccepted(const gpx::Child &child, const QString &text)
{
    if (!child.pattern)
        return true;
    const QRegularExpression pattern(QRegularExpression::anchoredPattern(QLatin1String(child.pattern)));
    const bool isDate = QLatin1String(child.element) != QLatin1String("time")
                        || QDate::fromString(text.left(10), Qt::ISODate).isValid();
    return isDate && pattern.match(text).hasMatch();
}

class GpxWriter : public PlaceWriter
{
public:
    explicit GpxWriter(QIODevice &out)
        : m_out(out)
    {}

    QString begin() override
    {
        m_xml.writeStartDocument();
        m_xml.writeDefaultNamespace(QStringLiteral("http://www.topografix.com/GPX/1/1"));
        m_xml.writeNamespace(QLatin1String(gpx::EXTENSION), QLatin1String(gpx::PREFIX));
        m_xml.writeStartElement(QStringLiteral("gpx"));
        m_xml.writeAttribute(QStringLiteral("version"), QStringLiteral("1.1"));
        m_xml.writeAttribute(QStringLiteral("creator"), QStringLiteral("places"));
        m_xml.writeCharacters(QStringLiteral("\n"));
        return problem();
    }

    QString write(const Place &place) override
    {
        FlatFeature feature(place, toXmlText);
        m_leftOut = feature.position().isValid() ? QString() : QStringLiteral("no position, and a waypoint needs one");
        if (!m_leftOut.isEmpty())
            return {};
        m_xml.writeStartElement(QStringLiteral("wpt"));
        writePosition(feature.position());
        for (const gpx::Child &child : gpx::CHILDREN)
            writeChild(child, feature);
        writeExtensions(feature);
        m_xml.writeEndElement();
        m_xml.writeCharacters(QStringLiteral("\n"));
        return problem();
    }

    QString end() override
    {
        m_xml.writeEndDocument();
        return problem();
    }

private:
    /// The schema requires longitudes below 180.
    void writePosition(const Coordinates &position)
    {
        m_xml.writeAttribute(QStringLiteral("lat"), toXmlDecimal(position.latitude()));
        m_xml.writeAttribute(QStringLiteral("lon"),
                             toXmlDecimal(position.longitude() < 180 ? position.longitude() : -180));
        if (std::isfinite(position.altitude()))
            m_xml.writeTextElement(QStringLiteral("ele"), toXmlDecimal(position.altitude()));
    }

    void writeChild(const gpx::Child &child, FlatFeature &feature)
    {
        const QString property = QLatin1String(child.property);
        if (!isAccepted(child, feature.text(property)))
            return;
        const QString text = feature.take(property);
        if (text.isEmpty())
            return;
        if (property == QLatin1String(vocabulary::URL)) {
            m_xml.writeEmptyElement(QLatin1String(child.element));
            m_xml.writeAttribute(QStringLiteral("href"), text);
        } else {
            m_xml.writeTextElement(QLatin1String(child.element), text);
        }
    }

    /// Writes the known properties as elements. All others are in the rest.
    void writeExtensions(FlatFeature &feature)
    {
        m_xml.writeStartElement(QStringLiteral("extensions"));
        writeExtension(QLatin1String(vocabulary::ID), feature.takeId());
        const QStringList names = feature.names();
        for (const QString &name : names) {
            if (!vocabulary::kinds().contains(name))
                continue;
            const bool isList = vocabulary::kinds().value(name) == vocabulary::Kind::Texts;
            writeExtension(name, feature.take(name), isList);
        }
        writeExtension(QLatin1String(vocabulary::REST), feature.rest());
        m_xml.writeEndElement();
    }

    /// Writes an empty text only for a list.
    void writeExtension(const QString &name, const QString &text, bool isList = false)
    {
        if (!text.isEmpty() || isList)
            m_xml.writeTextElement(QLatin1String(gpx::EXTENSION), name, text);
    }

    [[nodiscard]] QString problem() const { return m_xml.hasError() ? m_out.errorString() : QString(); }

    QIODevice &m_out;
    QXmlStreamWriter m_xml{&m_out};
};

} // namespace

std::unique_ptr<PlaceWriter> makeGpxWriter(QIODevice &out)
{
    return std::make_unique<GpxWriter>(out);
}

} // namespace formats
