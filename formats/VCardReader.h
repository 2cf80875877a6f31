// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "PlaceReader.h"

namespace formats
{

/// Reads vCards of versions 2.1, 3 and 4: a place for each address of a card, or for its position. A card with
/// VCARD_PLACE gives that place, with what other programs have changed in the card since. A ReadPlaces. A build without
/// KContacts cannot read them, and says so.
QString readVCards(Input &input, const ReadOptions &options, const TakePlace &take);

/// True when an import of a plain card gives this place. False in a build without KContacts.
bool saysAll(const QByteArray &card, const vela::platform::places::Place &place);

} // namespace formats
