// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QStringList>

namespace formats
{

struct XmlMember;

/// The geometry of a KML placemark.
struct KmlGeometry
{
    /// A single point as in the file: longitude, latitude and, if it has an effect, altitude. Otherwise empty.
    QStringList position = {};
    QByteArray json = {}; ///< Any other geometry as GeoJSON; empty when there is none.
    bool isTrack = false; ///< It contains a track.
    QString problem = {}; ///< Why it cannot be read; empty when it can.
};

KmlGeometry readKmlGeometry(const XmlMember &placemark);

} // namespace formats
