// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/Coordinates.h>

#include <QtCore/QString>

/// Positions as people and programs write them, in WGS 84.
namespace formats
{

/// What a text says about a position. Neither is set for a text of no known form.
struct ReadPosition
{
    vela::platform::places::Coordinates position = {}; ///< Valid, or not set.
    QString problem = {};                              ///< Why a text of a known form is no position.
};

/// Reads a position that a person may write: decimal degrees ("47.24,8.72", "47,24; 8,72"), degrees with minutes and
/// seconds ("47°14'24.5\"N 8°43'12\"E", "N 47 14.4 E 8 43.2"), or a full plus code ("8FVC9G8F+6X"), whose horizontal
/// accuracy is the radius of its area. Latitude comes first unless letters N, S, E, W say otherwise.
ReadPosition readPosition(const QString &text);

/// Reads "LATITUDE,LONGITUDE" or "LATITUDE,LONGITUDE,ALTITUDE" in the strict form of RFC 5870: without blanks, plus
/// signs and exponents. Invalid for anything else.
vela::platform::places::Coordinates readDecimalPosition(const QString &text);

/// True for a text that begins as a `geo:` URI.
bool isGeoUri(const QString &text);
/// Reads a `geo:` URI (RFC 5870): coordinates, "crs" (WGS 84 only) and "u", which becomes the horizontal accuracy.
/// Other parameters, query and fragment are passed over. Position or problem is set.
ReadPosition readGeoUri(const QString &uri);
/// The `geo:` URI of a valid position, with altitude and horizontal accuracy if they are known. It reads back as it
/// was.
QString toGeoUri(const vela::platform::places::Coordinates &position);

} // namespace formats
