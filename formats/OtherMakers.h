// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <rapidjson/document.h>

/// JSON of other makers, as features with the properties of Vocabulary.h.
namespace formats
{

/// Turns an element of a list of map data (a node, way or relation) into a GeoJSON feature with the id "node/17" and
/// its tags as properties. False for a node without tags, which is only a corner of a way.
bool toFeature(rapidjson::Document &element);

/// Adds the properties of Vocabulary.h that other makers have under other names. The others stay as they are.
void interpretProperties(rapidjson::Document &feature);

} // namespace formats
