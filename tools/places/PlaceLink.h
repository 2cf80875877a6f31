// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QString>

namespace vela::platform::places
{
class Place;
}

namespace tool
{

/// True for a text that is meant as a link to a place: a `geo:` URI or a web address.
bool isLink(const QString &text);

/// Fills a new place from a `geo:` URI (RFC 5870) or a link of the map web service. Returns what is wrong with it, and
/// the place is then of no use; empty when nothing is.
///
/// Of a `geo:` URI the coordinates, "crs" (WGS 84 only) and "u", which becomes the horizontal accuracy, count; other
/// parameters are passed over. Its query is not in the RFC but in use: "q" is "LATITUDE,LONGITUDE(LABEL)", or a label;
/// at 0,0, where "q" stands for a search, an address without a position.
QString readLink(const QString &text, vela::platform::places::Place &place);

} // namespace tool
