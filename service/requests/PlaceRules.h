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

/// What a place must be to be stored.
namespace placesd
{

/// Seconds since 1970-01-01T00:00:00 UTC.
quint64 now();

/// Whether a place can be stored: Success, LimitExceeded or PlaceNotAcceptable.
Status accept(const vela::platform::places::PlacePrivate &place);

/// Whether the open channel can store a place: Success, or PlaceNotAcceptable for one that it would not see again.
/// Takes the place out of the recent bucket, and what the service counts starts anew: both are the owner's to say.
Status acceptFromGuest(vela::platform::places::PlacePrivate &place);

/// Removes what is not stored with a place: records that are not persistable, and locations that say nothing. Such a
/// location would be counted in the stored record but not written, and the record could not be read again.
void dropWhatIsNotStored(vela::platform::places::PlacePrivate &place);

/// Success when a request that names a perimeter may use a place of the perimeter `own`; else NotPermitted. The default
/// perimeter names none.
Status permit(orix_places_protocol::Perimeter named, vela::system::SecurityPerimeter::Type own);

} // namespace placesd
