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

/// Places as GeoJSON (RFC 7946). The properties are those that readFeature() reads, and those that the service gives.
namespace formats
{

class JsonWriter;

/// Places that somebody else owns.
using PlaceList = QVector<const vela::platform::places::AbstractPlace *>;

/// Index of the location that stands for the place where a form has one: the first that has a position, else the first.
int shownLocation(const vela::platform::places::Place &place);

/// A place as a Feature whose id is the place's number.
QByteArray toGeoJson(const vela::platform::places::Place &place);
/// A place as a Feature for other stores and programs: its id is the one that it was imported with, if any.
QByteArray toGeoJsonFeature(const vela::platform::places::Place &place);
/// Places in short as a FeatureCollection with a foreign member "hasMore".
QByteArray toGeoJson(const PlaceList &places, bool hasMore);

/// Writes the members of such a FeatureCollection.
void writeCollection(JsonWriter &out, const PlaceList &places, bool hasMore);
/// Writes the members of an object that stands for an auxiliary record.
void writeRecord(JsonWriter &out, const vela::platform::places::AuxiliaryData &data);

} // namespace formats
