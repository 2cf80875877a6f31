// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/Error.h>

#include <QtCore/QString>

#include <functional>
#include <vector>

namespace tool
{

namespace places = vela::platform::places;

/// What became of one change.
struct Change
{
    /// A change that is the last request of this thread.
    static Change of(places::Error::Type error);

    places::Error::Type error = places::Error::Success;
    QString reason = {};  ///< The service's reason for the error.
    QString missing = {}; ///< What is not there to be changed, as the end of a sentence about the place.
    bool isDone = false;  ///< Something was changed.
};

/// Changes one place, by its number; for any thread.
using ChangePlace = std::function<Change(qint64 id)>;

/// Changes places with several changes in flight, so that they share the service's transactions. Gives what became of
/// each, in the order of the numbers.
std::vector<Change> changeAll(const std::vector<qint64> &ids, const ChangePlace &change);

} // namespace tool
