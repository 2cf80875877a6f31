// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QByteArray>

namespace vela::platform::places
{
class Place;
}

namespace formats
{

/// Property of a feature with the lines of a vCard that no member of a place is for, as a list of texts.
constexpr char VCARD_LINES[] = "vcard";

/// A place as a vCard (RFC 6350) that other programs read. What it has no property for is in the property VCARD_PLACE,
/// which a card has unless an import of the others alone gives the same place.
QByteArray toVCard(const vela::platform::places::Place &place);

/// The same card without VCARD_PLACE.
QByteArray toPlainVCard(const vela::platform::places::Place &place);

} // namespace formats
