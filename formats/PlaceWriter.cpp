// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "PlaceWriter.h"

namespace formats
{

QString writeAll(QIODevice &out, const QByteArray &bytes)
{
    return out.write(bytes) == bytes.size() ? QString() : out.errorString();
}

} // namespace formats
