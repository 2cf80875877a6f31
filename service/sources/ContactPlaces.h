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

/// Finds the position of an address; invalid when it cannot.
using Geocode = std::function<vela::platform::places::Coordinates(const vela::platform::places::Address &address)>;

/// The account that all contacts belong to.
constexpr int CONTACT_ACCOUNT = 1;

/// What a contact's address is known by: "account,contact,number". An address is numbered by its kind and, among those
/// of its kind, its position from 0 on: number = formats::CardAddressKind + 3 * position.
QString contactExternalId(int account, int contact, int number);

/// The places of a contact: one for each of its addresses, or for its position when it has no address. Each carries the
/// contact as its auxiliary record. None for a contact without a name.
std::vector<FoundPlace> placesOf(const formats::VCard &card, int id, const Geocode &geocode);

/// Whether a contact is no person but a room.
bool isRoom(const formats::VCard &card);

} // namespace placesd
