// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "PlaceWriter.h"

namespace formats
{

/// Writes JSON documents (places/PlaceJson.h), one a line, with all characters.
std::unique_ptr<PlaceWriter> makeDocumentWriter(QIODevice &out);

/// The same in ISO 8859-1, for readers that expect that. The note tells how many places lost characters.
std::unique_ptr<PlaceWriter> makeLatin1DocumentWriter(QIODevice &out);

} // namespace formats
