// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sources/PlaceProvider.h"

#include <functional>
#include <vector>

namespace KContacts
{
class Addressee;
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

/// What an address of a contact is. An address is numbered by its kind and, among those of its kind, its position from
/// 0 on: number = kind + 3 * position.
enum class AddressKind
{
    Home = 1,
    Work = 2,
    Other = 3
};

/// What a contact's address is known by: "account,contact,number".
QString contactExternalId(int account, int contact, int number);

/// The places of a contact: one for each of its addresses, or for its position when it has no address. Each carries the
/// contact as its auxiliary record. None for a contact without a name.
std::vector<FoundPlace> placesOf(const KContacts::Addressee &contact, int id, const Geocode &geocode);

/// Whether a contact is no person but a room.
bool isRoom(const KContacts::Addressee &contact);

} // namespace placesd
