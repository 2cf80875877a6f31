// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/AbstractPlace.h>

#include <QtCore/QString>

// Texts for a row of the list; they distinguish places of the same name.

/// True for a suggested category, which is not a place but can be searched by its name.
bool isCategory(const vela::platform::places::AbstractPlace &result);

/// The name with a short description.
QString nameText(const vela::platform::places::AbstractPlace &place);

/// The address without repetitions.
QString whereText(const vela::platform::places::AbstractPlace &place);

/// The distance from `centre`; empty when it is unknown.
QString distanceText(const vela::platform::places::AbstractPlace &place,
                     const vela::platform::places::Coordinates &centre);
