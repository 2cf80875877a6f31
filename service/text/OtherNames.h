// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QStringList>

namespace vela::platform::places
{
class AuxiliaryData;
}

namespace placesd
{

/// Other names of a place, in any language, from the properties of a record with OpenStreetMap keys:
/// https://wiki.openstreetmap.org/wiki/Names.
QStringList otherNames(const vela::platform::places::AuxiliaryData &record);

} // namespace placesd
