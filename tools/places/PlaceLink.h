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

/// Fills a new place from a `geo:` URI (RFC 5870), a link of the map web service on any host, one of a map web site
/// that MapSites.cpp knows, or a position as formats::readPosition() takes it. Returns what is wrong with it, and the
/// place is then of no use; empty when nothing is.
///
/// The query of a `geo:` URI is not in the RFC but in use: "q" is "POSITION(LABEL)", or a label; at 0,0, where "q"
/// stands for a search, an address without a position.
QString readLink(const QString &text, vela::platform::places::Place &place);

/// Reads a position as formats::readPosition() does, or that of a link. Neither position nor problem is set for a text
/// of no known form.
formats::ReadPosition readAnyPosition(const QString &text);
/// What is said of a text that is no position: which forms there are.
QString unknownForm();

} // namespace tool
