// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/Address.h>

#include <QtCore/QHash>

/// Names of the parts of a place in the `properties` of a GeoJSON feature, for reader and writer. docs/formats.md
/// describes them.
namespace formats::vocabulary
{

using vela::platform::places::Address;

/// A part of an address with one text.
struct AddressText
{
    const char *name;
    QString (Address::*get)() const;
    void (Address::*set)(const QString &);
};

constexpr char LABEL[] = "label";

constexpr AddressText ADDRESS_TEXTS[] = {
    {LABEL, &Address::label, &Address::setLabel},
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

/// A part of an address with a list of lines.
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

/// Fields of text-only formats: the id of the feature, and the text of FlatFeature::rest().
constexpr char ID[] = "id";
constexpr char REST[] = "geojson";

/// Name of a place without a name, as in the service.
constexpr char UNNAMED[] = "Unnamed Place";

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

/// Values that the service sets. The writer writes them; the reader skips them.
constexpr char OWNER[] = "owner";
constexpr char USAGE_COUNT[] = "usageCount";
constexpr char LAST_USED_TIME[] = "lastUsedTime";
constexpr char CREATION_TIME[] = "creationTime";
constexpr char UPDATE_TIME[] = "updateTime";

/// Values of lists of places; the reader keeps them as unknown properties.
constexpr char POSITION[] = "position";
constexpr char LATITUDE[] = "latitude";
constexpr char LONGITUDE[] = "longitude";
constexpr char DISTANCE[] = "distance";

/// Required type of a property. Numbers and texts are converted to each other.
enum class Kind
{
    Text,
    Url,
    Whole,  ///< A number in the range of int.
    Metres, ///< An accuracy in metres.
    Time,   ///< Seconds since 1970-01-01T00:00:00 UTC, or a date and time in ISO 8601.
    Flag,   ///< true or false.
    Texts,  ///< A list of texts.
    Objects,
    Unread, ///< Written only; skipped by the reader.
};

/// All known properties, including those of the address.
inline const QHash<QString, Kind> &kinds()
{
    static const QHash<QString, Kind> KINDS = [] {
        QHash<QString, Kind> kinds{
            {QLatin1String(FLOOR), Kind::Whole},
            {QLatin1String(HORIZONTAL_ACCURACY), Kind::Metres},
            {QLatin1String(VERTICAL_ACCURACY), Kind::Metres},
            {QLatin1String(VIRTUAL_DATA), Kind::Text},
            {QLatin1String(VIRTUAL_DATA_TYPE), Kind::Whole},
            {QLatin1String(NAME), Kind::Text},
            {QLatin1String(DESCRIPTION), Kind::Text},
            {QLatin1String(PHONE), Kind::Text},
            {QLatin1String(EMAIL), Kind::Text},
            {QLatin1String(URL), Kind::Url},
            {QLatin1String(FAVORITE), Kind::Flag},
            {QLatin1String(SOURCE), Kind::Text},
            {QLatin1String(PRIVATE), Kind::Flag},
            {QLatin1String(EXPIRY_TIME), Kind::Time},
            {QLatin1String(TAGS), Kind::Texts},
            {QLatin1String(ALIASES), Kind::Texts},
            {QLatin1String(LOCATION_INDEX), Kind::Whole},
            {QLatin1String(OTHER_LOCATIONS), Kind::Objects},
            {QLatin1String(RECORDS), Kind::Objects},
            {QLatin1String(OWNER), Kind::Unread},
            {QLatin1String(USAGE_COUNT), Kind::Unread},
            {QLatin1String(LAST_USED_TIME), Kind::Unread},
            {QLatin1String(CREATION_TIME), Kind::Unread},
            {QLatin1String(UPDATE_TIME), Kind::Unread},
        };
        for (const auto &part : ADDRESS_TEXTS)
            kinds.insert(QLatin1String(part.name), Kind::Text);
        for (const auto &part : ADDRESS_LINES)
            kinds.insert(QLatin1String(part.name), Kind::Texts);
        return kinds;
    }();
    return KINDS;
}

/// Types of the auxiliary records that keep members a place cannot hold, as JSON texts by name: one for the unknown
/// properties of a feature, one for the other members of the feature, including "id".
constexpr char FOREIGN_PROPERTIES[] = "geojson.properties";
constexpr char FOREIGN_MEMBERS[] = "geojson.feature";

/// True for these types.
inline bool isForeign(const QString &type)
{
    return type == QLatin1String(FOREIGN_PROPERTIES) || type == QLatin1String(FOREIGN_MEMBERS);
}

} // namespace formats::vocabulary
