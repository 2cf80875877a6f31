// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QList>
#include <QtCore/QStringList>

namespace vela::platform::places
{
class Place;
class PlaceHeader;
} // namespace vela::platform::places

/// Places as GeoJSON (RFC 7946). The properties are those that readFeature() reads, and those that the service gives.
namespace tool
{

/// A place as a Feature whose id is the place's number.
QByteArray toGeoJson(const vela::platform::places::Place &place);
/// A place as a Feature for other stores and programs: its id is the one that it was imported with, if any.
QByteArray toGeoJsonFeature(const vela::platform::places::Place &place);
/// Places in short as a FeatureCollection.
QByteArray toGeoJson(const QList<vela::platform::places::PlaceHeader *> &places);
/// Texts as a JSON array.
QByteArray toJson(const QStringList &texts);

} // namespace tool
