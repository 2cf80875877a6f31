// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "formats/Position.h"

#include <QtCore/QString>

namespace vela::platform::places
{
class Place;
}

namespace tool
{

/// True for a text that looks like a link to a place: a `geo:` URI or a web address.
bool isLink(const QString &text);

/// Fills a new place from a `geo:` URI (RFC 5870), a link of the map web service on any host, a link of a map web site
/// in MapSites.cpp, or a position in a form of formats::readPosition(). Returns the error, and the place is then
/// undefined; empty on success.
///
/// The query of a `geo:` URI is common but not part of the RFC: "q" is "POSITION(LABEL)" or a label. At 0,0 "q" is a
/// search text, which becomes an address without a position.
QString readLink(const QString &text, vela::platform::places::Place &place);

/// Reads a position as formats::readPosition() does, or the position of a link. Neither position nor problem is set for
/// a text in an unknown form.
formats::ReadPosition readAnyPosition(const QString &text);
/// The message for a text in an unknown form. It lists the known forms.
QString unknownForm();

} // namespace tool
