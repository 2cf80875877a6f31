// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QIODevice>

#include <functional>

namespace placesd
{

/// What a file of vCards had besides whole cards.
struct VCardFaults
{
    int cut = 0;          ///< Cards without an end; what stands in them was read.
    int leftOut = 0;      ///< Lines beyond the limits of a card, left out. Pictures, sounds and keys do not count.
    bool hasEnded = true; ///< False when the file goes on behind the limit, and was not read on.
};

/// Hands out the cards of a file (RFC 6350, RFC 2426 and version 2.1), one at a time, each from its BEGIN to its END. A
/// card that is cut gets its end. A line that goes beyond the limits of a card is left out. Memory is that of one card.
VCardFaults readVCards(QIODevice &file, const std::function<void(const QByteArray &card)> &take);

/// Whether a card has a property, in any group.
bool hasProperty(const QByteArray &card, const QByteArray &name);

} // namespace placesd
