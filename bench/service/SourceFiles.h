// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QString>

namespace bench
{

/// Writes a GeoJSON file of generated places, for the gazetteer.
void writeGazetteer(const QString &path, int places);

/// Writes `contacts` contacts with one address each into a new folder, as vCards.
void writeContacts(const QString &folder, int contacts);

} // namespace bench
