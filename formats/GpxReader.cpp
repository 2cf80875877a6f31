// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "GpxReader.h"

#include "Gpx.h"
#include "TextFeature.h"
#include "XmlReader.h"
#include "XmlText.h"

#include <QtCore/QLocale>

#include <algorithm>

namespace formats
{

namespace
{

/// GPX elevations are above the geoid. Adding the height of the geoid gives the altitude above the ellipsoid.
QString altitudeOf(const XmlMember &waypoint)
{
    const QString elevation = waypoint.value("ele");
    bool isNumber = false;
    const double metres = elevation.toDouble(&isNumber) + waypoint.value("geoidheight").toDouble();
    return isNumber ? QString::number(metres, 'g', QLocale::FloatingPointShortest) : elevation;
}

/// The property name for a child of a waypoint; empty for other paths.
QString propertyOf(const QString &path)
{
    static const QStringList OTHERS{QStringLiteral("ele"), QStringLiteral("geoidheight"), QStringLiteral("link"),
                                    QStringLiteral("extensions")};
    if (path == QLatin1String("url") || path == QLatin1String("link@href"))
        return QLatin1String(vocabulary::URL);
    if (path.contains(QLatin1Char('/')) || path.contains(QLatin1Char('@')) || OTHERS.contains(path))
        return {};
    const auto *child = std::find_if(std::begin(gpx::CHILDREN), std::end(gpx::CHILDREN),
                                     [&](const gpx::Child &each) { return path == QLatin1String(each.element); });
    return child == std::end(gpx::CHILDREN) ? path : QLatin1String(child->property);
}

/// Reads the extensions of our namespace.
void setExtensions(const XmlMember &waypoint, TextFeature &feature)
{
    const QString path = QStringLiteral("extensions/%1:").arg(QLatin1String(gpx::PREFIX));
    for (const XmlField &field : waypoint.fields) {
        const QString name = field.path.startsWith(path) ? field.path.mid(path.size()) : QString();
        if (name == QLatin1String(vocabulary::ID))
            feature.setId(field.value);
        else if (vocabulary::kinds().contains(name))
            feature.set(name, field.value);
    }
}

void readWaypoint(const XmlMember &waypoint, const ReadOptions &options, ReadPlace &read)
{
    TextFeature feature(toXmlText);
    feature.setRest(waypoint.value(qPrintable(
        QStringLiteral("extensions/%1:%2").arg(QLatin1String(gpx::PREFIX), QLatin1String(vocabulary::REST)))));
    feature.setPosition(waypoint.value("@lon"), waypoint.value("@lat"), altitudeOf(waypoint));
    for (const XmlField &field : waypoint.fields) {
        if (const QString property = propertyOf(field.path); !property.isEmpty())
            feature.set(property, field.value);
    }
    setExtensions(waypoint, feature);
    feature.read(options, read);
}

} // namespace

QString readGpx(Input &input, const ReadOptions &options, const TakePlace &take)
{
    static const XmlFormat GPX{"gpx",
                               {{"wpt", "waypoint", readWaypoint},
                                {"rte", "route", nullptr, MemberKind::Route},
                                {"trk", "track", nullptr, MemberKind::Track}},
                               nullptr,
                               gpx::EXTENSION,
                               gpx::PREFIX};
    return readXml(input, GPX, options, take);
}

} // namespace formats
