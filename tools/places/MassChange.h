// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/Error.h>

#include <QtCore/QString>

#include <functional>
#include <vector>

namespace tool
{

namespace places = vela::platform::places;

/// Result of one change.
struct Change
{
    /// A change that is the last request of the calling thread.
    static Change of(places::Error::Type error);

    places::Error::Type error = places::Error::Success;
    QString reason = {};  ///< The service's reason for the error.
    QString missing = {}; ///< What the place lacks for the change, as the end of a sentence about it.
    bool isDone = false;  ///< Something was changed.
};

/// Changes one place by its id. Called on any thread.
using ChangePlace = std::function<Change(qint64 id)>;

/// Changes places with several requests in flight, so that they share transactions in the service. Returns the results
/// in the order of `ids`.
std::vector<Change> changeAll(const std::vector<qint64> &ids, const ChangePlace &change);

} // namespace tool
