// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "VCardReader.h"

// What a build without KContacts has in place of VCardReader.cpp.

namespace formats
{

QString readVCards(Input & /*input*/, const ReadOptions & /*options*/, const TakePlace & /*take*/)
{
    return QStringLiteral("this build cannot read vCards: it was made without the library KContacts");
}

bool saysAll(const QByteArray & /*card*/, const vela::platform::places::Place & /*place*/)
{
    return false;
}

} // namespace formats
