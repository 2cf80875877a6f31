// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "PlaceReader.h"

namespace formats
{

/// Reads vCards of versions 2.1, 3 and 4: one place for each address of a card, or one for its position. A card with
/// VCARD_PLACE gives that place with the changes that other programs made to the card since. A ReadPlaces. Returns an
/// error in a build without KContacts.
QString readVCards(Input &input, const ReadOptions &options, const TakePlace &take);

/// True when an import of a plain card restores this place. False in a build without KContacts.
bool restoresPlace(const QByteArray &card, const vela::platform::places::Place &place);

} // namespace formats
