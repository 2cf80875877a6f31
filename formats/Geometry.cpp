// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "Geometry.h"

#include "JsonValue.h"

#include <QtCore/QLocale>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace formats
{

using namespace vela::platform::places;
using rapidjson::Value;

namespace
{

constexpr double MAX_LATITUDE = 90;
constexpr double MAX_LONGITUDE = 180;
/// Maximum number of characters that a message quotes.
constexpr int MAX_QUOTED = 40;

struct Point
{
    double longitude;
    double latitude;
};
using Points = std::vector<Point>;
/// The first is the boundary, the others are holes.
using Rings = std::vector<Points>;

/// The points, lines and areas of a geometry, at any nesting.
struct Parts
{
    std::vector<const Value *> points; ///< Positions.
    std::vector<const Value *> lines;  ///< Lists of positions.
    std::vector<const Value *> areas;  ///< Lists of rings.
    QString problem;
};

// ------------------------------------------------------------------------------------------------------- positions

QString numberText(double number)
{
    return QString::number(number, 'g', QLocale::FloatingPointShortest);
}

/// Error in one number of a position; empty when it is a number.
QString problemOfNumber(const char *what, const Value &value)
{
    if (value.IsNumber())
        return {};
    const QString name = QLatin1String(what);
    if (!value.IsString())
        return QStringLiteral("the %1 is not a number").arg(name);
    if (textOf(value).isEmpty())
        return QStringLiteral("the %1 is empty or missing").arg(name);
    bool isNumber = false;
    (void)textOf(value).toDouble(&isNumber);
    return (isNumber ? QStringLiteral("%1 %2 is a text, not a number") : QStringLiteral("%1 %2 is not a number"))
        .arg(name, quoted(textOf(value)));
}

QString problemOfRange(double longitude, double latitude)
{
    const bool isSwapped = std::fabs(latitude) <= MAX_LONGITUDE && std::fabs(longitude) <= MAX_LATITUDE;
    if (std::fabs(latitude) > MAX_LATITUDE)
        return QStringLiteral("latitude %1 is beyond 90%2")
            .arg(numberText(latitude), isSwapped ? QStringLiteral("; are longitude and latitude swapped?") : QString());
    if (std::fabs(longitude) > MAX_LONGITUDE)
        return QStringLiteral("longitude %1 is beyond 180").arg(numberText(longitude));
    return {};
}

/// Why a GeoJSON position is not a point on the Earth; empty when it is one.
QString problemOfPosition(const Value &position)
{
    if (!position.IsArray())
        return QStringLiteral("its coordinates are not a list of numbers");
    if (position.Size() < 2)
        return QStringLiteral("its coordinates are not longitude and latitude, but %1 number").arg(position.Size());
    QString problem = problemOfNumber("longitude", position[0]);
    if (problem.isEmpty())
        problem = problemOfNumber("latitude", position[1]);
    return problem.isEmpty() ? problemOfRange(position[0].GetDouble(), position[1].GetDouble()) : problem;
}

void takePoint(const Value &position, Geometry &result)
{
    result.problem = problemOfPosition(position);
    if (!result.problem.isEmpty())
        return;
    result.point = Coordinates(position[1].GetDouble(), position[0].GetDouble());
    if (position.Size() < 3 || position[2].IsNull())
        return;
    if (const QString loss = problemOfNumber("altitude", position[2]); !loss.isEmpty())
        result.losses.append(loss);
    else
        result.point.setAltitude(position[2].GetDouble());
}

/// A list of positions; empty when one of them is invalid.
Points pointsOf(const Value &positions)
{
    Points points;
    if (!positions.IsArray())
        return points;
    for (const Value &position : positions.GetArray()) {
        if (!problemOfPosition(position).isEmpty())
            return {};
        points.push_back({position[0].GetDouble(), position[1].GetDouble()});
    }
    return points;
}

// ---------------------------------------------------------------------------------------------------------- lines

/// Length in degrees of latitude, computed on the plane that touches the Earth at the segment.
double lengthOf(const Point &from, const Point &to)
{
    constexpr double RADIANS = 3.14159265358979323846 / 180;
    const double middle = (from.latitude + to.latitude) / 2 * RADIANS;
    return std::hypot((to.longitude - from.longitude) * std::cos(middle), to.latitude - from.latitude);
}

double lengthOf(const Points &line)
{
    double length = 0;
    for (std::size_t i = 1; i < line.size(); ++i)
        length += lengthOf(line[i - 1], line[i]);
    return length;
}

/// The point at half the length of the line.
Point middleOf(const Points &line)
{
    double left = lengthOf(line) / 2;
    for (std::size_t i = 1; i < line.size(); ++i) {
        const double length = lengthOf(line[i - 1], line[i]);
        if (length > 0 && length >= left) {
            const double share = left / length;
            return {line[i - 1].longitude + share * (line[i].longitude - line[i - 1].longitude),
                    line[i - 1].latitude + share * (line[i].latitude - line[i - 1].latitude)};
        }
        left -= length;
    }
    return line.back();
}

// ---------------------------------------------------------------------------------------------------------- areas

/// A latitude near the middle of the area where it has no corner, so the parallel there crosses only sides.
double parallelThrough(const Rings &area)
{
    const auto [south, north] =
        std::minmax_element(area[0].begin(), area[0].end(),
                            [](const Point &left, const Point &right) { return left.latitude < right.latitude; });
    const double centre = (south->latitude + north->latitude) / 2;
    double below = south->latitude;
    double above = north->latitude;
    for (const Points &ring : area) {
        for (const Point &corner : ring) {
            if (corner.latitude <= centre)
                below = std::max(below, corner.latitude);
            else
                above = std::min(above, corner.latitude);
        }
    }
    return (below + above) / 2;
}

/// Longitudes at which a parallel crosses the sides of the area, from west to east.
std::vector<double> crossings(const Rings &area, double parallel)
{
    std::vector<double> longitudes;
    for (const Points &ring : area) {
        for (std::size_t i = 0; i < ring.size(); ++i) {
            const Point &from = ring[i];
            const Point &to = ring[(i + 1) % ring.size()];
            if ((from.latitude > parallel) != (to.latitude > parallel))
                longitudes.push_back(from.longitude
                                     + (parallel - from.latitude) / (to.latitude - from.latitude)
                                           * (to.longitude - from.longitude));
        }
    }
    std::sort(longitudes.begin(), longitudes.end());
    return longitudes;
}

/// Finds a point on the surface of the area, like PointOnSurface() of OGC 06-103r4: the middle of the widest segment of
/// a parallel inside the area. Holes are outside (even-odd rule). Returns the width of the segment; 0 for an area
/// without extent.
double pointInside(const Rings &area, Point &point)
{
    const double parallel = parallelThrough(area);
    const std::vector<double> longitudes = crossings(area, parallel);
    double widest = 0;
    point = area[0].front();
    for (std::size_t i = 1; i < longitudes.size(); i += 2) {
        if (longitudes[i] - longitudes[i - 1] > widest) {
            widest = longitudes[i] - longitudes[i - 1];
            point = {(longitudes[i] + longitudes[i - 1]) / 2, parallel};
        }
    }
    return widest;
}

// ----------------------------------------------------------------------------------------------- lines and areas

BoundingBox boxAround(const std::vector<Points> &lists)
{
    Point southWest{MAX_LONGITUDE, MAX_LATITUDE};
    Point northEast{-MAX_LONGITUDE, -MAX_LATITUDE};
    for (const Points &list : lists) {
        for (const Point &point : list) {
            southWest = {std::min(southWest.longitude, point.longitude), std::min(southWest.latitude, point.latitude)};
            northEast = {std::max(northEast.longitude, point.longitude), std::max(northEast.latitude, point.latitude)};
        }
    }
    BoundingBox box;
    box.setTopLeft(Coordinates(northEast.latitude, southWest.longitude));
    box.setBottomRight(Coordinates(southWest.latitude, northEast.longitude));
    return box;
}

/// The rings of an area; empty when one of them is invalid.
Rings ringsOf(const Value &area)
{
    Rings rings;
    if (!area.IsArray())
        return rings;
    for (const Value &positions : area.GetArray()) {
        rings.push_back(pointsOf(positions));
        if (rings.back().size() < 3)
            return {};
    }
    return rings;
}

void takePointIn(const Parts &parts, Geometry &result)
{
    std::vector<Points> outlines;
    Point best{};
    double widest = -1;
    for (const Value *value : parts.areas) {
        const Rings area = ringsOf(*value);
        Point point{};
        const double width = area.empty() ? -1 : pointInside(area, point);
        if (area.empty())
            result.problem = QStringLiteral("its area has a ring that is not a list of at least three positions");
        else
            outlines.push_back(area[0]);
        if (width > widest) {
            widest = width;
            best = point;
        }
    }
    result.point = Coordinates(best.latitude, best.longitude);
    result.box = boxAround(outlines);
}

void takePointOn(const Parts &parts, Geometry &result)
{
    std::vector<Points> lines;
    for (const Value *value : parts.lines) {
        lines.push_back(pointsOf(*value));
        if (lines.back().empty())
            result.problem = QStringLiteral("its line is not a list of positions");
    }
    const auto longest = std::max_element(lines.begin(), lines.end(), [](const Points &left, const Points &right) {
        return lengthOf(left) < lengthOf(right);
    });
    if (!result.problem.isEmpty())
        return;
    const Point middle = middleOf(*longest);
    result.point = Coordinates(middle.latitude, middle.longitude);
    result.box = boxAround(lines);
}

// ------------------------------------------------------------------------------------------------------- geometries

/// Adds the elements of a list. Null and an empty list add nothing.
void addAll(const Value &list, std::vector<const Value *> &values)
{
    if (!list.IsArray())
        return;
    for (const Value &value : list.GetArray())
        values.push_back(&value);
}

void addOne(const Value &value, std::vector<const Value *> &values)
{
    if (!value.IsNull() && !(value.IsArray() && value.Empty()))
        values.push_back(&value);
}

void collect(const Value &geometry, Parts &parts);

void collectAll(const Value &geometries, Parts &parts)
{
    if (!geometries.IsArray())
        return;
    for (const Value &geometry : geometries.GetArray())
        collect(geometry, parts);
}

void collect(const Value &geometry, Parts &parts)
{
    static constexpr struct
    {
        const char *type;
        const char *member;
        std::vector<const Value *> Parts::*list;
        void (*add)(const Value &value, std::vector<const Value *> &values);
    } TYPES[] = {
        {"Point", "coordinates", &Parts::points, addOne},     {"MultiPoint", "coordinates", &Parts::points, addAll},
        {"LineString", "coordinates", &Parts::lines, addOne}, {"MultiLineString", "coordinates", &Parts::lines, addAll},
        {"Polygon", "coordinates", &Parts::areas, addOne},    {"MultiPolygon", "coordinates", &Parts::areas, addAll},
    };
    if (geometry.IsNull())
        return;
    const QString type = textMember(geometry, "type");
    if (type == QLatin1String("GeometryCollection")) {
        if (const Value *geometries = memberOf(geometry, "geometries"))
            collectAll(*geometries, parts);
        return;
    }
    for (const auto &each : TYPES) {
        if (type != QLatin1String(each.type))
            continue;
        if (const Value *coordinates = memberOf(geometry, each.member))
            each.add(*coordinates, parts.*each.list);
        return;
    }
    parts.problem = type.isEmpty() ? QStringLiteral("its geometry has no type")
                                   : QStringLiteral("its geometry is of the unknown type %1").arg(quoted(type));
}

} // namespace

QString quoted(const QString &text)
{
    const bool isLong = text.size() > MAX_QUOTED;
    return QLatin1Char('"') + text.left(MAX_QUOTED) + (isLong ? QStringLiteral("…\"") : QStringLiteral("\""));
}

Geometry readGeometry(const Value &geometry, bool areas)
{
    Parts parts;
    collect(geometry, parts);
    Geometry result;
    result.problem = parts.problem;
    if (!result.problem.isEmpty())
        return result;
    if (parts.points.size() == 1 || (areas && !parts.points.empty() && parts.areas.empty() && parts.lines.empty()))
        takePoint(*parts.points.front(), result);
    else if (!parts.areas.empty() && !areas)
        result.kind = MemberKind::Area;
    else if (!parts.areas.empty())
        takePointIn(parts, result);
    else if (!parts.lines.empty() && !areas)
        result.kind = MemberKind::Line;
    else if (!parts.lines.empty())
        takePointOn(parts, result);
    else if (!parts.points.empty())
        result.problem = QStringLiteral("its geometry has %1 points; a place has one (--areas takes the first)")
                             .arg(parts.points.size());
    return result;
}

} // namespace formats
