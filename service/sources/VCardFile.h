// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QIODevice>

#include <functional>

namespace placesd
{

/// Problems in a vCard file.
struct VCardFaults
{
    int cut = 0;          ///< Cards without an END; their lines are used.
    int leftOut = 0;      ///< Lines beyond the limits of a card, without pictures, sounds and keys.
    bool hasEnded = true; ///< False when the file exceeds the size limit; the rest is not read.
};

/// Hands out the cards of a file (RFC 6350, RFC 2426 and version 2.1) one by one, from BEGIN to END. A cut card gets an
/// END. A line beyond the limits is left out. Memory is limited to one card.
VCardFaults readVCards(QIODevice &file, const std::function<void(const QByteArray &card)> &take);

/// Whether a card has a property, in any group.
bool hasProperty(const QByteArray &card, const QByteArray &name);

} // namespace placesd
