// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sources/PlaceProvider.h"

#include <functional>
#include <vector>

namespace formats
{
class VCard;
}
namespace vela::platform::places
{
class Address;
}

namespace placesd
{

/// Finds the position of an address; invalid when it is unknown.
using Geocode = std::function<vela::platform::places::Coordinates(const vela::platform::places::Address &address)>;

/// The account that all contacts belong to.
constexpr int CONTACT_ACCOUNT = 1;

/// External id of a contact's address: "account,contact,number". The number is formats::CardAddressKind + 3 * position,
/// with the position counted from 0 per kind.
QString contactExternalId(int account, int contact, int number);

/// The places of a contact: one per address, or one for its position when it has no address. Each has the contact as
/// its auxiliary record. None for a contact without a name.
std::vector<FoundPlace> placesOf(const formats::VCard &card, int id, const Geocode &geocode);

/// Whether a contact is a room, not a person.
bool isRoom(const formats::VCard &card);

} // namespace placesd
