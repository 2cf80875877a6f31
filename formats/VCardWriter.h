// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QByteArray>

namespace vela::platform::places
{
class Place;
}

namespace formats
{

/// Property of a feature with the vCard lines that do not map to a place, as a list of texts.
constexpr char VCARD_LINES[] = "vcard";

/// A place as a vCard (RFC 6350) for other programs. VCARD_PLACE is added unless an import of the other properties
/// alone restores the place.
QByteArray toVCard(const vela::platform::places::Place &place);

/// The same card without VCARD_PLACE.
QByteArray toPlainVCard(const vela::platform::places::Place &place);

} // namespace formats
