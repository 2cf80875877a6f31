// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/Coordinates.h>

#include <QtCore/QByteArray>
#include <QtCore/QString>
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

/// A place as a Feature; its "id" is the place's id, its times are texts.
QByteArray toGeoJson(const vela::platform::places::Place &place);
/// A place as a Feature for other stores and programs; its "id" is the one from the imported file, if any.
QByteArray toGeoJsonFeature(const vela::platform::places::Place &place);
/// The header values of places as a FeatureCollection with a foreign member "hasMore".
/// @param centre distances are measured from here; invalid for none.
QByteArray toGeoJson(const PlaceList &places, bool hasMore, const vela::platform::places::Coordinates &centre);

/// Writes the members of such a FeatureCollection.
void writeCollection(JsonWriter &out, const PlaceList &places, bool hasMore,
                     const vela::platform::places::Coordinates &centre);
/// Writes the members of an object for an auxiliary record.
void writeRecord(JsonWriter &out, const vela::platform::places::AuxiliaryData &data);

/// The end of the year 9999, in seconds since 1970-01-01T00:00:00 UTC. Later times are written as numbers.
constexpr quint64 LAST_SECOND = 253402300799;

/// A time in UTC, such as 2026-01-31T12:00:00Z (ISO 8601); empty for 0.
QString utcTime(quint64 seconds);
/// Distance of two positions in metres, to the decimetre; NaN when one is not valid.
double roundedDistance(const vela::platform::places::Coordinates &a, const vela::platform::places::Coordinates &b);

} // namespace formats
