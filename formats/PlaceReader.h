// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/Place.h>

#include <QtCore/QString>

#include <functional>
#include <memory>

namespace formats
{

class Input;

/// One member of a file of places.
struct ReadPlace
{
    QString where;                                        ///< Which one it is, to be shown: "feature 3".
    std::unique_ptr<vela::platform::places::Place> place; ///< New and whole; null when it is no place.
    QString problem;                                      ///< Why it is no place.
};

/// Takes a member of a file; false to read no further.
using TakePlace = std::function<bool(ReadPlace read)>;

/// Reads a file one member at a time, however many there are, and hands out each, those before a fault in the file too.
/// Returns what is wrong with the file; empty when nothing is, or when `take` ended it.
using ReadPlaces = QString (*)(Input &input, const TakePlace &take);

} // namespace formats
