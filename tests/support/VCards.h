// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QStringList>

/// Leaves out a test of vCards in a build that cannot read them.
#define NEEDS_VCARDS()                                                                                                 \
    if (!HAS_VCARDS)                                                                                                   \
    GTEST_SKIP() << "this build has no KContacts"

/// Arguments of a service for the vCards in a folder; none in a build that cannot read them.
inline QStringList contactsIn(const QString &folder)
{
    return HAS_VCARDS ? QStringList{QStringLiteral("--contacts"), folder} : QStringList();
}
