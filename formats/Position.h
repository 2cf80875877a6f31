// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/Coordinates.h>

#include <QtCore/QString>

/// Positions in the forms that people and programs write, in WGS 84.
namespace formats
{

/// Result of reading a position. Neither member is set for a text in an unknown form.
struct ReadPosition
{
    vela::platform::places::Coordinates position = {}; ///< Valid, or not set.
    QString problem = {};                              ///< Why a text in a known form is not a position.
};

/// Reads a position that a person may write: decimal degrees ("47.24,8.72", "47,24; 8,72"), degrees with minutes and
/// seconds ("47°14'24.5\"N 8°43'12\"E", "N 47 14.4 E 8 43.2"), or a full plus code ("8FVC9G8F+6X"), whose horizontal
/// accuracy is the radius of its area. Latitude comes first unless the letters N, S, E, W give another order.
ReadPosition readPosition(const QString &text);

/// Reads "LATITUDE,LONGITUDE" or "LATITUDE,LONGITUDE,ALTITUDE" in the strict form of RFC 5870: no blanks, plus signs or
/// exponents. Invalid for anything else.
vela::platform::places::Coordinates readDecimalPosition(const QString &text);

/// True for a text that starts with the scheme `geo:`.
bool isGeoUri(const QString &text);
/// Reads a `geo:` URI (RFC 5870): coordinates, "crs" (WGS 84 only) and "u", which becomes the horizontal accuracy.
/// Other parameters, the query and the fragment are ignored. Position or problem is set.
ReadPosition readGeoUri(const QString &uri);
/// The `geo:` URI of a valid position, with altitude and horizontal accuracy if they are known. readGeoUri() restores
/// the position exactly.
QString toGeoUri(const vela::platform::places::Coordinates &position);

} // namespace formats
