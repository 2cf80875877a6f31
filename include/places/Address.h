// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/Global.h>

#include <QtCore/QString>
#include <QtCore/QStringList>

namespace vela::platform::places
{

class AddressPrivate;

/// A postal address, with parts inside a building. Unknown parts are empty.
class PLACES_EXPORT Address
{
public:
    /// An empty address.
    Address();
    Address(const Address &other);
    /// Moves the value; `other` becomes an address with all parts unknown.
    Address(Address &&other) noexcept;
    Address &operator=(const Address &other);
    Address &operator=(Address &&other) noexcept;
    ~Address();

    /// Swaps the values without a copy.
    void swap(Address &other) noexcept { d.swap(other.d); }
    friend void swap(Address &left, Address &right) noexcept { left.swap(right); }

    /// Display name, such as the name of a building; replaces the address in displays when set.
    [[nodiscard]] QString label() const;
    void setLabel(const QString &label);

    /// House number as text.
    [[nodiscard]] QString houseNumber() const;
    void setHouseNumber(const QString &houseNumber);

    /// Street, including the house number in countries that write both together.
    [[nodiscard]] QString street() const;
    void setStreet(const QString &street);

    /// City or town.
    [[nodiscard]] QString city() const;
    void setCity(const QString &city);

    /// State, province or other first-level division.
    [[nodiscard]] QString region() const;
    void setRegion(const QString &region);

    /// Name of the country, in any language.
    [[nodiscard]] QString country() const;
    void setCountry(const QString &country);

    /// Country code of two letters (ISO 3166-1 alpha-2).
    [[nodiscard]] QString isoAlpha2CountryCode() const;
    void setIsoAlpha2CountryCode(const QString &code);

    /// Country code of three letters (ISO 3166-1 alpha-3).
    [[nodiscard]] QString countryCode() const;
    void setCountryCode(const QString &code);

    /// Postal code in the form of the country.
    [[nodiscard]] QString postalCode() const;
    void setPostalCode(const QString &postalCode);

    /// Campus or site that the building belongs to.
    [[nodiscard]] QString campus() const;
    void setCampus(const QString &campus);

    /// Name or number of the building.
    [[nodiscard]] QString building() const;
    void setBuilding(const QString &building);

    /// Floor number as used in the building; -2147483648 when unset.
    [[nodiscard]] int floor() const;
    void setFloor(int floor);
    /// True when a floor is set; 0 is a floor.
    [[nodiscard]] bool hasValidFloor() const;

    /// Name or number of the room.
    [[nodiscard]] QString room() const;
    void setRoom(const QString &room);

    /// Short form for display, one element per line; empty when the source has none.
    [[nodiscard]] QStringList compactAddressLines() const;
    void setCompactAddressLines(const QStringList &lines);

    /// Long form for display, one element per line; empty when the source has none.
    [[nodiscard]] QStringList extendedAddressLines() const;
    void setExtendedAddressLines(const QStringList &lines);

    /// True when no part is set. The display lines are derived from the parts and do not count.
    [[nodiscard]] bool isEmpty() const;

    /// Compares every part and both lists of lines, exactly.
    bool operator==(const Address &other) const;
    bool operator!=(const Address &other) const;

private:
    friend class AddressPrivate;
    ValuePointer<AddressPrivate> d;
};

/// For debugging: the address as one line.
PLACES_EXPORT QDebug operator<<(QDebug debug, const Address &address);

} // namespace vela::platform::places

Q_DECLARE_TYPEINFO(vela::platform::places::Address, Q_MOVABLE_TYPE);
Q_DECLARE_METATYPE(vela::platform::places::Address)
