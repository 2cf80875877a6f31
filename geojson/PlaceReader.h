// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QString>

#include <functional>

namespace vela::platform::places
{
class Place;
}

namespace geojson
{

class Input;

/// One member of a file of places.
struct ReadPlace
{
    QString where;                                  ///< Which one it is, to be shown: "feature 3".
    vela::platform::places::Place *place = nullptr; ///< The reader's own, new and whole; null when it is no place.
    QString problem;                                ///< Why it is no place.
};

/// Takes a member of a file; false to read no further.
using TakePlace = std::function<bool(const ReadPlace &read)>;

/// Reads a file one member at a time, however many there are, and hands out each, those before a fault in the file too.
/// Returns what is wrong with the file; empty when nothing is, or when `take` ended it.
using ReadPlaces = QString (*)(Input &input, const TakePlace &take);

} // namespace geojson
