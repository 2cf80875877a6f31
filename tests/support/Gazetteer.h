// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "support/Client.h"

/// Arguments for a places service with the sample cities and airports.
inline QStringList sampleGazetteer()
{
    return {QStringLiteral("--gazetteer"), QStringLiteral(SOURCES "/examples/data/cities.geojson"),
            QStringLiteral(SOURCES "/examples/data/airports.geojson")};
}

/// Waits until the service has built the index of its gazetteer. With a sanitizer this takes longer than a request may.
inline void awaitGazetteer()
{
    int status = 1;
    for (int i = 0; i < 10 && status != 0; ++i)
        status = places("search heathrow --group suggestions").status;
    EXPECT_EQ(status, 0);
}
