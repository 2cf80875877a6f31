// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "PlaceReader.h"

#include <QtCore/QByteArray>

namespace formats
{

struct XmlMember;

/// The geometry of a KML placemark.
struct KmlGeometry
{
    /// The only point: longitude, latitude and, if it has an effect, altitude, as in the file.
    QStringList position = {};
    MemberKind kind = MemberKind::Place; ///< Area before Track before Line.
    int points = 0;
    QByteArray json = {};    ///< The whole geometry as GeoJSON; empty without a geometry.
    QString unreadable = {}; ///< Why it cannot be read; empty when it can.
};

KmlGeometry readKmlGeometry(const XmlMember &placemark);

} // namespace formats
