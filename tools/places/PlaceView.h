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

/// All data of a place, for people: one name and value per line, unset values left out, times in local time.
QString viewOf(const vela::platform::places::Place &place);
/// One record, with the provider that it comes from.
QString viewOf(const vela::platform::places::AuxiliaryData &record);

} // namespace tool
