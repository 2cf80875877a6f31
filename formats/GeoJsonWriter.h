// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QVector>

namespace vela::platform::places
{
class AbstractPlace;
class AuxiliaryData;
class Place;
} // namespace vela::platform::places

/// Places as GeoJSON (RFC 7946), with the properties that readFeature() reads and those that the service adds.
namespace formats
{

class JsonWriter;

/// Places; not owned.
using PlaceList = QVector<const vela::platform::places::AbstractPlace *>;

/// Index of the location that represents the place: the first one with a position, else the first one.
int shownLocation(const vela::platform::places::Place &place);

/// A place as a Feature; its "id" is the place's id.
QByteArray toGeoJson(const vela::platform::places::Place &place);
/// A place as a Feature for other stores and programs; its "id" is the one from the imported file, if any.
QByteArray toGeoJsonFeature(const vela::platform::places::Place &place);
/// The header values of places as a FeatureCollection with a foreign member "hasMore".
QByteArray toGeoJson(const PlaceList &places, bool hasMore);

/// Writes the members of such a FeatureCollection.
void writeCollection(JsonWriter &out, const PlaceList &places, bool hasMore);
/// Writes the members of an object for an auxiliary record.
void writeRecord(JsonWriter &out, const vela::platform::places::AuxiliaryData &data);

} // namespace formats
