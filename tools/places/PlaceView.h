// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QString>

namespace vela::platform::places
{
class AuxiliaryData;
class Place;
} // namespace vela::platform::places

namespace tool
{

/// A place with all it has, for people: a name and a value a line, what is not set left out, times in local time.
QString viewOf(const vela::platform::places::Place &place);
/// A record alone, and which provider it comes from.
QString viewOf(const vela::platform::places::AuxiliaryData &record);

} // namespace tool
