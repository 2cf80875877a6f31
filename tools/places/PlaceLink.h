// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QString>

namespace vela::platform::places
{
class Place;
}

namespace tool
{

/// True for a text that looks like a link to a place: a `geo:` URI or a web address.
bool isLink(const QString &text);

/// Fills a new place from a `geo:` URI (RFC 5870) or a link of the map web service. Returns the error, after which the
/// content of the place is undefined; empty on success.
///
/// A `geo:` URI is read with its coordinates, "crs" (WGS 84 only) and "u", the horizontal accuracy; other parameters
/// are ignored. Its query is not in the RFC but in use: "q" is "LATITUDE,LONGITUDE(LABEL)" or a label. At 0,0 "q" is a
/// search text, and the place gets it as an address without a position.
QString readLink(const QString &text, vela::platform::places::Place &place);

} // namespace tool
