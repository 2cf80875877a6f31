// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <rapidjson/document.h>

/// Converts JSON of other makers to features with the properties of Vocabulary.h.
namespace formats
{

/// Converts an element of OpenStreetMap data (a node, way or relation) to a GeoJSON feature with an id such as
/// "node/17" and its tags as properties. False for a node without tags, which is only a corner of a way.
bool toFeature(rapidjson::Document &element);

/// Adds the properties of Vocabulary.h that other makers store under other names. Existing properties are not changed.
void interpretProperties(rapidjson::Document &feature);

} // namespace formats
