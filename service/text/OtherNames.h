// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QStringList>

namespace vela::platform::places
{
class AuxiliaryData;
}

namespace placesd
{

/// Names of a place besides its own, in this and other languages, that a record of it holds under the keys of
/// OpenStreetMap: https://wiki.openstreetmap.org/wiki/Names.
QStringList otherNames(const vela::platform::places::AuxiliaryData &record);

} // namespace placesd
