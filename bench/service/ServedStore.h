// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "StoreMaker.h"
#include "support/Placesd.h"

namespace bench
{

/// A places service on a copy of a generated store, with a gazetteer and contacts. The copy is beside the store, so
/// that it is on a real disk even if temporary files are not.
class ServedStore
{
public:
    /// @param gazetteer a GeoJSON file.
    /// @param contacts a folder of vCards.
    ServedStore(const MadeStore &made, const QString &gazetteer, const QString &contacts);

    /// Makes the library use this service.
    void select() const;
    [[nodiscard]] const MadeStore &made() const { return m_made; }
    [[nodiscard]] QString path(const char *name) const { return m_service.path(name); }

private:
    const MadeStore m_made;
    const QTemporaryDir m_copy;
    Placesd m_service;
};

} // namespace bench
