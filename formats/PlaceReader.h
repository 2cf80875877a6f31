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
    QString where;                                        ///< Its name for users: "feature 3".
    std::unique_ptr<vela::platform::places::Place> place; ///< A new place; null when the member is no place.
    QString problem;                                      ///< Why the member is no place.
};

/// Takes a member of a file; returns false to stop reading.
using TakePlace = std::function<bool(ReadPlace read)>;

/// Reads a file member by member and hands out each one, also those before an error in the file. Returns the error of
/// the file; empty on success and when `take` stops the reading.
using ReadPlaces = QString (*)(Input &input, const TakePlace &take);

} // namespace formats
