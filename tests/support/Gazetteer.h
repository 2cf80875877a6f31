// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QStringList>

/// Arguments that give a places service the sample cities and airports to find.
inline QStringList sampleGazetteer()
{
    return {QStringLiteral("--gazetteer"), QStringLiteral(SOURCES "/examples/data/cities.geojson"),
            QStringLiteral(SOURCES "/examples/data/airports.geojson")};
}
