// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QStringList>

namespace formats
{

/// A geometry in well-known text (OGC 06-103r4), with or without a prefix SRID of WGS 84.
struct WellKnownText
{
    QStringList position = {}; ///< A point: longitude, latitude and optional altitude.
    QByteArray json = {};      ///< Another geometry as GeoJSON.
    QString problem = {};      ///< Why the text is not a geometry; empty when it is one.
};

WellKnownText readWellKnownText(const QString &text);

} // namespace formats
