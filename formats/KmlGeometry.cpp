// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "KmlGeometry.h"

#include "XmlReader.h"

#include <QtCore/QRegularExpression>

#include <algorithm>
#include <cmath>

namespace formats
{

namespace
{

/// Reads the elements of a geometry in the order of their end tags.
class GeometryReader
{
public:
    void take(const XmlField &field)
    {
        const int slash = field.path.lastIndexOf(QLatin1Char('/'));
        const QString parent = field.path.left(std::max(slash, 0));
        const QString name = field.path.mid(slash + 1);
        if (name == QLatin1String("coordinates"))
            m_coordinates = field.value;
        else if (name == QLatin1String("altitudeMode"))
            m_isAbsolute = field.value == QLatin1String("absolute");
        else if (name == QLatin1String("gx:coord"))
            m_coordinates += QString(field.value).replace(QLatin1Char(' '), QLatin1Char(',')) + QLatin1Char(' ');
        else if (name == QLatin1String("Point"))
            takePoint();
        else if (name == QLatin1String("LinearRing") && parent.endsWith(QLatin1String("BoundaryIs")))
            m_rings.append(takePositions());
        else if (name == QLatin1String("Polygon"))
            takePolygon();
        else if (name == QLatin1String("LineString") || name == QLatin1String("LinearRing"))
            takeLine();
        else if (name == QLatin1String("gx:Track"))
            takeTrack();
        else if (name == QLatin1String("Model"))
            m_result.problem = QStringLiteral("its geometry is a Model; places are points");
    }

    KmlGeometry result()
    {
        if (m_parts.size() != 1 || m_result.position.isEmpty())
            m_result.position.clear();
        if (m_parts.size() > 1)
            m_result.json = R"({"type":"GeometryCollection","geometries":[)" + m_parts.join(',') + "]}";
        else if (m_result.position.isEmpty())
            m_result.json = m_parts.join();
        return m_result;
    }

private:
    void takePoint()
    {
        QStringList position = std::exchange(m_coordinates, {}).split(QLatin1Char(','));
        // In all other modes, including the default, the altitude has no effect.
        if (!std::exchange(m_isAbsolute, false))
            position = position.mid(0, 2);
        for (QString &text : position)
            text = text.trimmed();
        m_result.position = position;
        m_parts.append(R"({"type":"Point","coordinates":[)" + number(position.value(0)) + ','
                       + number(position.value(1)) + "]}");
    }

    void takeLine() { m_parts.append(R"({"type":"LineString","coordinates":)" + takePositions() + '}'); }

    void takeTrack()
    {
        takeLine();
        m_result.isTrack = true;
    }

    void takePolygon()
    {
        m_parts.append(R"({"type":"Polygon","coordinates":[)" + m_rings.join(',') + "]}");
        m_rings.clear();
    }

    /// The positions as a GeoJSON list, without altitudes.
    QByteArray takePositions()
    {
        static const QRegularExpression SPACE(QStringLiteral("\\s+"));
        QByteArrayList positions;
        const QStringList tuples = std::exchange(m_coordinates, {}).split(SPACE, Qt::SkipEmptyParts);
        for (const QString &text : tuples) {
            const QStringList numbers = text.split(QLatin1Char(','));
            const QByteArray position = number(numbers.value(0)) + ',' + number(numbers.value(1));
            if (position.contains("null"))
                m_result.problem = QStringLiteral("\"%1\" is not a position").arg(text.left(80));
            positions.append('[' + position + ']');
        }
        m_isAbsolute = false;
        return '[' + positions.join(',') + ']';
    }

    /// A number as JSON; null when the text is not a number.
    static QByteArray number(const QString &text)
    {
        bool isNumber = false;
        const double number = text.toDouble(&isNumber);
        return isNumber && std::isfinite(number) ? QByteArray::number(number, 'g', 17) : QByteArrayLiteral("null");
    }

    KmlGeometry m_result;
    QByteArrayList m_parts;
    QByteArrayList m_rings; ///< Rings of the current polygon.
    QString m_coordinates;
    bool m_isAbsolute = false;
};

} // namespace

KmlGeometry readKmlGeometry(const XmlMember &placemark)
{
    static const QRegularExpression GEOMETRY(
        QStringLiteral("^(Point|LineString|LinearRing|Polygon|MultiGeometry|Model|gx:Track|gx:MultiTrack)(/[^@]*)?$"));
    GeometryReader reader;
    for (const XmlField &field : placemark.fields) {
        if (GEOMETRY.match(field.path).hasMatch())
            reader.take(field);
    }
    return reader.result();
}

} // namespace formats
