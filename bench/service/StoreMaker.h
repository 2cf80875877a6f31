// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QString>

namespace bench
{

/// A database of generated places; do not change it.
struct MadeStore
{
    QString path;
    int places = 0;
    double seconds = 0; ///< Time for generating it.
    double bytesAPlace = 0;
};

/// The database with `places` places in a folder; generated if it is missing.
MadeStore makeStore(const QString &folder, int places);

} // namespace bench
