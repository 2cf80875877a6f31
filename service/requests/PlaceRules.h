// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#pragma once

#include "protocol/ProtocolTypes.h"
#include "Status.h"

#include <vela/system/SecurityPerimeter.h>

#include <QtCore/QtGlobal>

namespace vela::platform::places
{
class PlacePrivate;
}

/// Rules for places to be stored.
namespace placesd
{

/// Seconds since 1970-01-01T00:00:00 UTC.
quint64 now();

/// Whether a place can be stored: Success, LimitExceeded or PlaceNotAcceptable.
Status accept(const vela::platform::places::PlacePrivate &place);

/// Whether the open channel may store a place: Success, or PlaceNotAcceptable for a place that it could not see later.
/// Removes the place from the recent bucket and resets its counters, because only the owner may set both.
Status acceptFromGuest(vela::platform::places::PlacePrivate &place);

/// Removes parts that are not stored: records that are not persistable, and locations without content. The stored
/// record would count such a location without containing it, and could not be decoded.
void dropUnstoredParts(vela::platform::places::PlacePrivate &place);

/// Success when a request with the perimeter `named` may use a place with the perimeter `own`; else NotPermitted. The
/// default perimeter allows all.
Status permit(orix_places_protocol::Perimeter named, vela::system::SecurityPerimeter::Type own);

} // namespace placesd
