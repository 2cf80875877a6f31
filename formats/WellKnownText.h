// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "PlaceReader.h"

namespace formats
{

/// A geometry in well-known text (OGC 06-103r4), with or without the SRID of WGS 84 before it.
struct WellKnownText
{
    QStringList position = {}; ///< A point: longitude, latitude and optional altitude.
    MemberKind kind = MemberKind::Place;
    QByteArray json = {}; ///< A line or area as GeoJSON.
    QString problem = {}; ///< Why the text is no geometry; empty when it is one.
};

WellKnownText readWellKnownText(const QString &text);

} // namespace formats
