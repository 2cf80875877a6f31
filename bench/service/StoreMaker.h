// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QString>

namespace bench
{

/// A database of made places, which is not to be changed.
struct MadeStore
{
    QString path;
    int places = 0;
    double seconds = 0; ///< Time that it took to make it.
    double bytesAPlace = 0;
};

/// The database of so many places in a folder; made there unless it is there already.
MadeStore makeStore(const QString &folder, int places);

} // namespace bench
