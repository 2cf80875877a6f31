// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "support/Placesd.h"

namespace bench
{

/// A places service with the places of GeoJSON files in its gazetteer or in its store. The library uses the service
/// that was started last.
class ServedFiles
{
public:
    /// @param areStored whether the places are imported; a failure is printed to standard error.
    ServedFiles(const QStringList &files, bool areStored);

private:
    Placesd m_service;
};

} // namespace bench
