// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QByteArray>

#include <functional>
#include <limits>

namespace formats
{

class Input;

/// Property with the whole place as a GeoJSON feature, without parameters. It is the only line of a card that may be
/// longer than MAX_VCARD_LINE_SIZE: up to MAX_ITEM_SIZE.
constexpr char VCARD_PLACE[] = "X-VELA-PLACE";

/// Most lines of a vCard, longest such line and all of them together, in bytes, but for VCARD_PLACE. A folded line is
/// one. Parsing takes the square of the lines, and of the parameters of one.
constexpr int MAX_VCARD_LINES = 500;
constexpr int MAX_VCARD_LINE_SIZE = 16 * 1024;
constexpr int MAX_VCARD_SIZE = 256 * 1024;

/// One card of a file.
struct CardText
{
    QByteArray text;    ///< From its BEGIN to its END, without VCARD_PLACE.
    QByteArray place;   ///< The line of VCARD_PLACE; empty when it has none.
    qint64 line = 1;    ///< Where in the file it begins.
    int leftOut = 0;    ///< Lines beyond the limits, left out. Pictures, sounds and keys do not count.
    bool isCut = false; ///< It had no end.
};

/// Hands out the cards of a file (RFC 6350, RFC 2426 and version 2.1), one at a time, until `take` returns false. A
/// card that is cut gets its end. A line that goes beyond the limits of a card is left out. Memory is that of one card.
/// Returns false when the file is longer than `most` bytes, of which the rest was not read.
bool splitVCards(Input &file, const std::function<bool(const CardText &card)> &take,
                 qint64 most = std::numeric_limits<qint64>::max());

} // namespace formats
