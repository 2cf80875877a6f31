// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "WellKnownText.h"

#include <QtCore/QRegularExpression>

namespace formats
{

namespace
{

constexpr struct
{
    const char *name; ///< Well-known text, in capitals.
    const char *type; ///< GeoJSON.
} GEOMETRIES[] = {
    {"LINESTRING", "LineString"},
    {"MULTILINESTRING", "MultiLineString"},
    {"POLYGON", "Polygon"},
    {"MULTIPOLYGON", "MultiPolygon"},
};

/// Converts the positions of a text to a GeoJSON list. It has the same structure with other brackets.
QByteArray toLists(const QString &positions)
{
    static const QRegularExpression POSITION(QStringLiteral("([-+.0-9eE]+)\\s+([-+.0-9eE]+)(\\s+[-+.0-9eE]+)*"));
    QString lists = positions;
    lists.replace(POSITION, QStringLiteral("[\\1,\\2]"));
    return lists.replace(QLatin1Char('('), QLatin1Char('[')).replace(QLatin1Char(')'), QLatin1Char(']')).toUtf8();
}

} // namespace

WellKnownText readWellKnownText(const QString &text)
{
    static const QRegularExpression FORM(
        QStringLiteral("^\\s*(?:SRID\\s*=\\s*4326\\s*;)?\\s*([A-Z]+)\\s*(?:Z|M|ZM)?\\s*(\\(.*\\))\\s*$"),
        QRegularExpression::CaseInsensitiveOption | QRegularExpression::DotMatchesEverythingOption);
    static const QRegularExpression SPACE(QStringLiteral("\\s+"));
    WellKnownText result;
    const QRegularExpressionMatch match = FORM.match(text);
    const QString name = match.captured(1).toUpper();
    if (name == QLatin1String("POINT") || name == QLatin1String("POINTZ")) {
        result.position = match.captured(2).mid(1).chopped(1).split(SPACE, Qt::SkipEmptyParts);
        return result;
    }
    for (const auto &geometry : GEOMETRIES) {
        if (name != QLatin1String(geometry.name))
            continue;
        result.json =
            QByteArray(R"({"type":")") + geometry.type + R"(","coordinates":)" + toLists(match.captured(2)) + '}';
        return result;
    }
    result.problem = QStringLiteral("geometry \"%1\" is not a point such as POINT(8.54 47.37)").arg(text.left(80));
    return result;
}

} // namespace formats
