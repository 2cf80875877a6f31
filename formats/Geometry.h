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

/// What a GeoJSON geometry is to a place.
struct Geometry
{
    MemberKind kind = MemberKind::Place; ///< Line or Area when there is no point because nobody asked for one.
    vela::platform::places::Coordinates point = {}; ///< Invalid when there is none.
    vela::platform::places::BoundingBox box = {};   ///< Of a line or area that has a point; else invalid.
    QString problem = {};                           ///< Why there is no point; empty for an empty geometry.
    QStringList losses = {};
};

/// Reads a geometry of any type, null included. One point is where the place is, alone, in a MultiPoint, or beside
/// lines and areas in a GeometryCollection.
/// @param areas gives a line its middle, an area a point inside that is in none of its holes, and several points their
///     first.
Geometry readGeometry(const rapidjson::Value &geometry, bool areas);

/// A text of a file as messages quote it.
QString quoted(const QString &text);

} // namespace formats
