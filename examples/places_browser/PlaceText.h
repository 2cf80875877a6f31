// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/AbstractPlace.h>
#include <places/AuxiliaryData.h>
#include <places/Error.h>

#include <QtCore/QList>
#include <QtCore/QString>

/// What is known about a place and what its records say, as HTML for a QTextBrowser. Every text of the place is
/// escaped, and nothing but web, e-mail and telephone addresses becomes a link.
/// @param place in full or in short.
QString placeText(const vela::platform::places::AbstractPlace &place,
                  const QList<vela::platform::places::AuxiliaryData> &records);

/// What went wrong, as a sentence.
QString errorText(vela::platform::places::Error::Type error);
