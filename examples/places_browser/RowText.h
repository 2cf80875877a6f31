// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/AbstractPlace.h>

#include <QtCore/QString>

// What a row of the list says of a place, so that it can be told apart from others of its name.

/// True for a suggested category. It is no place, but its name can be searched for as a category.
bool isCategory(const vela::platform::places::AbstractPlace &result);

/// The name, and a short description behind it.
QString nameText(const vela::platform::places::AbstractPlace &place);

/// Where it is: the address without what is said twice.
QString whereText(const vela::platform::places::AbstractPlace &place);

/// The distance from `centre`; empty when it is not known.
QString distanceText(const vela::platform::places::AbstractPlace &place,
                     const vela::platform::places::Coordinates &centre);
