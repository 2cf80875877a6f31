// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/AbstractPlace.h>
#include <places/AuxiliaryData.h>
#include <places/Error.h>

#include <QtCore/QList>
#include <QtCore/QString>

/// A place and its records as HTML for a QTextBrowser. All text of the place is escaped, and only web, e-mail and
/// telephone addresses become links.
/// @param place a full place or a header.
QString placeText(const vela::platform::places::AbstractPlace &place,
                  const QList<vela::platform::places::AuxiliaryData> &records);

/// An error as a sentence.
QString errorText(vela::platform::places::Error::Type error);
