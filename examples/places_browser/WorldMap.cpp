// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "WorldMap.h"

#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtGui/QPainter>

#include <algorithm>
#include <utility>

using vela::platform::places::Coordinates;

namespace
{

constexpr int GRID_DEGREES = 30;
constexpr double DOT_RADIUS = 3;
constexpr double MARK_RADIUS = 6;

/// The polygons of the packaged land, a GeoJSON FeatureCollection.
QPainterPath readLand()
{
    QPainterPath land;
    QFile file(QStringLiteral(":/land.geojson"));
    if (!file.open(QIODevice::ReadOnly))
        return land;
    const QJsonObject collection = QJsonDocument::fromJson(file.readAll()).object();
    const QJsonArray features = collection[QLatin1String("features")].toArray();
    for (const auto &feature : features) {
        const QJsonObject geometry = feature.toObject()[QLatin1String("geometry")].toObject();
        const QJsonArray rings = geometry[QLatin1String("coordinates")].toArray();
        for (const auto &ring : rings) {
            QPolygonF polygon;
            const QJsonArray points = ring.toArray();
            for (const auto &point : points)
                polygon << QPointF(point.toArray()[0].toDouble(), -point.toArray()[1].toDouble());
            land.addPolygon(polygon);
        }
    }
    return land;
}

/// A mix of two colours, with `share` of the second.
QColor between(const QColor &from, const QColor &to, double share)
{
    const auto mix = [share](int a, int b) { return qRound(a + (b - a) * share); };
    return {mix(from.red(), to.red()), mix(from.green(), to.green()), mix(from.blue(), to.blue())};
}

} // namespace

WorldMap::WorldMap(QWidget *parent)
    : QWidget(parent)
    , m_land(readLand())
{
    QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
}

void WorldMap::setDots(const QVector<Coordinates> &dots)
{
    m_dots.clear();
    std::copy_if(dots.begin(), dots.end(), std::back_inserter(m_dots), [](const auto &dot) { return dot.isValid(); });
    update();
}

void WorldMap::mark(const Coordinates &position)
{
    m_marked = position;
    update();
}

QRectF WorldMap::frame() const
{
    const double frameWidth = std::min<double>(width(), 2.0 * height());
    return {(width() - frameWidth) / 2, (height() - frameWidth / 2) / 2, frameWidth, frameWidth / 2};
}

QPointF WorldMap::pointOf(const Coordinates &position) const
{
    const QRectF map = frame();
    return {map.left() + (position.longitude() + 180) / 360 * map.width(),
            map.top() + (90 - position.latitude()) / 180 * map.height()};
}

void WorldMap::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setClipRect(frame());
    drawEarth(painter);
    painter.setPen(QPen(palette().color(QPalette::Base), 1));
    painter.setBrush(between(palette().color(QPalette::Highlight), palette().color(QPalette::Text), 0.2));
    for (const Coordinates &dot : std::as_const(m_dots))
        painter.drawEllipse(pointOf(dot), DOT_RADIUS, DOT_RADIUS);
    if (m_marked.isValid())
        drawMark(painter);
}

void WorldMap::drawEarth(QPainter &painter) const
{
    const QColor base = palette().color(QPalette::Base);
    const QColor text = palette().color(QPalette::Text);
    const QColor water = between(base, palette().color(QPalette::Highlight), 0.12);
    const QRectF map = frame();
    painter.fillRect(map, water);
    painter.save();
    painter.translate(map.center());
    painter.scale(map.width() / 360, map.height() / 180);
    QPen pen(between(water, text, 0.1), 1);
    pen.setCosmetic(true);
    painter.setPen(pen);
    for (int degrees = -180; degrees <= 180; degrees += GRID_DEGREES) {
        painter.drawLine(degrees, -90, degrees, 90);
        painter.drawLine(-180, degrees / 2, 180, degrees / 2);
    }
    pen.setColor(between(base, text, 0.45));
    painter.setPen(pen);
    painter.setBrush(between(base, text, 0.2));
    painter.drawPath(m_land);
    painter.restore();
}

void WorldMap::drawMark(QPainter &painter) const
{
    const QColor colour = palette().color(QPalette::Highlight);
    const QPointF at = pointOf(m_marked);
    painter.setPen(QPen(colour, 1));
    painter.drawLine(QPointF(at.x(), 0), QPointF(at.x(), height()));
    painter.drawLine(QPointF(0, at.y()), QPointF(width(), at.y()));
    painter.setPen(QPen(palette().color(QPalette::Base), 2));
    painter.setBrush(colour);
    painter.drawEllipse(at, MARK_RADIUS, MARK_RADIUS);
}
