// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "PlaceReader.h"

#include <places/BoundingBox.h>
#include <places/Coordinates.h>

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <rapidjson/document.h>

namespace formats
{

/// A GeoJSON geometry as part of a place.
struct Geometry
{
    MemberKind kind = MemberKind::Place; ///< Line or Area when the geometry has no point and areas are not imported.
    vela::platform::places::Coordinates point = {}; ///< Invalid when there is none.
    vela::platform::places::BoundingBox box = {};   ///< Box of a line or area that has a point; else invalid.
    QString problem = {};                           ///< Why there is no point; empty for an empty geometry.
    QStringList losses = {};
};

/// Reads a geometry of any type, or null. A single point is the position of the place: alone, in a MultiPoint, or among
/// lines and areas in a GeometryCollection.
/// @param areas makes points of other geometries: the middle of a line, a point inside an area but not in a hole, the
///     first of several points.
Geometry readGeometry(const rapidjson::Value &geometry, bool areas);

/// A text from a file, shortened and quoted for messages.
QString quoted(const QString &text);

} // namespace formats
