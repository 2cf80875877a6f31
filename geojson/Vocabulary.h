// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/Address.h>

/// The names under which the parts of a place stand in the `properties` of a GeoJSON feature: one home for the reader
/// and the writer. docs/formats.md says what each one means.
namespace geojson::vocabulary
{

using vela::platform::places::Address;

/// A part of an address that is one text.
struct AddressText
{
    const char *name;
    QString (Address::*get)() const;
    void (Address::*set)(const QString &);
};

constexpr AddressText ADDRESS_TEXTS[] = {
    {"label", &Address::label, &Address::setLabel},
    {"room", &Address::room, &Address::setRoom},
    {"building", &Address::building, &Address::setBuilding},
    {"campus", &Address::campus, &Address::setCampus},
    {"houseNumber", &Address::houseNumber, &Address::setHouseNumber},
    {"street", &Address::street, &Address::setStreet},
    {"city", &Address::city, &Address::setCity},
    {"region", &Address::region, &Address::setRegion},
    {"country", &Address::country, &Address::setCountry},
    {"countryCode", &Address::isoAlpha2CountryCode, &Address::setIsoAlpha2CountryCode},
    {"countryCode3", &Address::countryCode, &Address::setCountryCode},
    {"postalCode", &Address::postalCode, &Address::setPostalCode},
};

/// A part of an address that is a list of lines.
struct AddressLines
{
    const char *name;
    QStringList (Address::*get)() const;
    void (Address::*set)(const QStringList &);
};

constexpr AddressLines ADDRESS_LINES[] = {
    {"compactAddressLines", &Address::compactAddressLines, &Address::setCompactAddressLines},
    {"extendedAddressLines", &Address::extendedAddressLines, &Address::setExtendedAddressLines},
};

constexpr char FLOOR[] = "floor";
constexpr char HORIZONTAL_ACCURACY[] = "horizontalAccuracy";
constexpr char VERTICAL_ACCURACY[] = "verticalAccuracy";
constexpr char VIRTUAL_DATA[] = "virtualData";
constexpr char VIRTUAL_DATA_TYPE[] = "virtualDataType";

constexpr char NAME[] = "name";
constexpr char DESCRIPTION[] = "description";
constexpr char PHONE[] = "phone";
constexpr char EMAIL[] = "email";
constexpr char URL[] = "url";
constexpr char FAVORITE[] = "favorite";
constexpr char SOURCE[] = "source";
constexpr char PRIVATE[] = "private";
constexpr char EXPIRY_TIME[] = "expiryTime";
constexpr char TAGS[] = "tags";
constexpr char ALIASES[] = "aliases";
constexpr char LOCATION_INDEX[] = "locationIndex";
constexpr char OTHER_LOCATIONS[] = "otherLocations";
constexpr char RECORDS[] = "records";

/// What the service says of a place; written, and passed over when read.
constexpr char OWNER[] = "owner";
constexpr char USAGE_COUNT[] = "usageCount";
constexpr char LAST_USED_TIME[] = "lastUsedTime";
constexpr char CREATION_TIME[] = "creationTime";
constexpr char UPDATE_TIME[] = "updateTime";

/// Every name but those of the address.
constexpr const char *NAMES[] = {
    FLOOR,
    HORIZONTAL_ACCURACY,
    VERTICAL_ACCURACY,
    VIRTUAL_DATA,
    VIRTUAL_DATA_TYPE,
    NAME,
    DESCRIPTION,
    PHONE,
    EMAIL,
    URL,
    FAVORITE,
    SOURCE,
    PRIVATE,
    EXPIRY_TIME,
    TAGS,
    ALIASES,
    LOCATION_INDEX,
    OTHER_LOCATIONS,
    RECORDS,
    OWNER,
    USAGE_COUNT,
    LAST_USED_TIME,
    CREATION_TIME,
    UPDATE_TIME,
};

/// Types of the auxiliary records that keep what a place has no member for, each member's JSON text under its name: the
/// foreign properties of a feature, and the other members of the feature itself, its id among them.
constexpr char FOREIGN_PROPERTIES[] = "geojson.properties";
constexpr char FOREIGN_MEMBERS[] = "geojson.feature";

} // namespace geojson::vocabulary
