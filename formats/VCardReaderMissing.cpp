// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "VCardReader.h"

// Replaces VCardReader.cpp in a build without KContacts.

namespace formats
{

QString readVCards(Input & /*input*/, const ReadOptions & /*options*/, const TakePlace & /*take*/)
{
    return QStringLiteral("this build cannot read vCards: it was made without the library KContacts");
}

bool restoresPlace(const QByteArray & /*card*/, const vela::platform::places::Place & /*place*/)
{
    return false;
}

} // namespace formats
