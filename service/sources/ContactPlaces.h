// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sources/PlaceProvider.h"

#include <functional>
#include <memory>
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
inline QString contactExternalId(int account, int contact, int number)
{
    return QStringLiteral("%1,%2,%3").arg(account).arg(contact).arg(number);
}

/// A contact of a vCard file. In a build without KContacts it is empty.
class Contact
{
public:
    /// @param card one whole card, within the limits of formats::splitVCards().
    explicit Contact(const QByteArray &card);
    ~Contact();
    Contact(const Contact &) = delete;
    Contact &operator=(const Contact &) = delete;

    [[nodiscard]] QString name() const;
    /// The UID of the card; empty when it has none.
    [[nodiscard]] QString uid() const;
    /// Whether the contact is a room, not a person.
    [[nodiscard]] bool isRoom() const;
    /// One place per address, or one for the position when there is no address. Each has the contact as its auxiliary
    /// record. None for a contact without a name.
    [[nodiscard]] std::vector<FoundPlace> places(int id, const Geocode &geocode) const;

private:
    const std::unique_ptr<const formats::VCard> m_card;
};

} // namespace placesd
