// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QByteArray>

#include <functional>
#include <limits>

namespace formats
{

class Input;

/// Property with the whole place as a GeoJSON feature, without parameters. Only this line may be longer than
/// MAX_VCARD_LINE_SIZE; its limit is MAX_ITEM_SIZE.
constexpr char VCARD_PLACE[] = "X-VELA-PLACE";

/// Limits of a vCard without the line of VCARD_PLACE: number of lines, bytes of a line, and bytes of all lines. A
/// folded line counts once. KContacts needs quadratic time for the lines, and for the parameters of a line.
constexpr int MAX_VCARD_LINES = 500;
constexpr int MAX_VCARD_LINE_SIZE = 16 * 1024;
constexpr int MAX_VCARD_SIZE = 256 * 1024;

/// One card of a file.
struct CardText
{
    QByteArray text;    ///< From its BEGIN to its END, without VCARD_PLACE.
    QByteArray place;   ///< The line of VCARD_PLACE; empty when it has none.
    qint64 line = 1;    ///< Number of its first line in the file.
    int leftOut = 0;    ///< Number of dropped lines beyond the limits, without pictures, sounds and keys.
    bool isCut = false; ///< The card has no end.
};

/// Splits a file into its cards (RFC 6350, RFC 2426 and version 2.1) until `take` returns false. A cut card gets its
/// missing end. Lines beyond the limits of a card are dropped. Uses the memory of one card. Returns false when the file
/// is longer than `most` bytes; the rest is then not read.
bool splitVCards(Input &file, const std::function<bool(const CardText &card)> &take,
                 qint64 most = std::numeric_limits<qint64>::max());

} // namespace formats
