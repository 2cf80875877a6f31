// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "support/FormatFile.h"
#include "support/Placesd.h"
#include "support/VCards.h"

#include <places/Place.h>
#include <places/PlaceJson.h>
#include <places/PlaceManager.h>
#include <places/Utilities.h>

#include <gtest/gtest.h>

#include <QtCore/QFile>
#include <QtCore/QMap>

#include <map>
#include <memory>
#include <string>

// Compares the table of docs/formats.md with the formats: "yes" keeps any value, "partly" only a simple one, "no" none.

namespace
{

using namespace vela::platform::places;
using PlacePointer = std::unique_ptr<Place>;

enum class Kind
{
    Easy,     ///< ISO 8859-1, one line, seven decimals.
    Demanding ///< Any text or number.
};

constexpr char EASY[] = "A & B + \"C\" #1 100% caf\xC3\xA9";
constexpr char DEMANDING[] = "A & B + \"C\" #1 100% \xF0\x9F\x8F\xB0 \xD7\xA9\xD7\x9C\xD7\x95\xD7\x9D\nline two";

QString text(Kind kind, const char *suffix)
{
    return QString::fromUtf8(kind == Kind::Easy ? EASY : DEMANDING) + QLatin1Char(' ') + QLatin1String(suffix);
}

double degrees(Kind kind, double value)
{
    return kind == Kind::Easy ? value : value + 0.000000012345;
}

Location location(Kind kind, double latitude)
{
    Address address;
    // A map link contains a text only once when name and label are equal.
    address.setLabel(text(kind, kind == Kind::Easy ? "label" : "name"));
    char part[] = "a";
    for (const auto set : {&Address::setHouseNumber, &Address::setStreet, &Address::setCity, &Address::setRegion,
                           &Address::setCountry, &Address::setPostalCode, &Address::setIsoAlpha2CountryCode,
                           &Address::setCountryCode, &Address::setCampus, &Address::setBuilding, &Address::setRoom}) {
        (address.*set)(text(kind, part));
        ++part[0];
    }
    address.setFloor(-1);
    address.setCompactAddressLines({text(kind, "compact 1"), text(kind, "compact 2")});
    address.setExtendedAddressLines({text(kind, "extended 1"), text(kind, "extended 2")});
    Coordinates position(degrees(kind, latitude), degrees(kind, 7.4474123));
    position.setAltitude(degrees(kind, 540.25));
    position.setHorizontalAccuracy(12.5F);
    position.setVerticalAccuracy(20.25F);
    BoundingBox box;
    box.setTopLeft(Coordinates(degrees(kind, 47), 7));
    box.setBottomRight(Coordinates(46, degrees(kind, 8)));
    Location location;
    location.setAddress(address);
    location.setCoordinates(position);
    location.setBoundingBox(box);
    location.setVirtualData(text(kind, "virtual"));
    location.setVirtualDataType(VirtualLocationType::WebAddress);
    return location;
}

/// A place with something in every member, stored under `id`.
PlacePointer sample(Kind kind, qint64 id)
{
    const QByteArray document =
        R"({"id":)" + QByteArray::number(id)
        + R"(,"owner":"somebody","restricted":true,)"
          R"("certainty":2,"perimeter":2,"lastUsedTime":5,"complete":true,"usageCount":6,)"
          R"("expiryTime":7,"creationTime":8,"updateTime":9,"contents":[{"id":10,"type":"poi"}]})";
    PlacePointer place = PlaceJson::readPlace(document);
    place->setName(text(kind, "name"));
    place->setDescription(text(kind, "description"));
    place->setSource(text(kind, "source"));
    place->addTag(text(kind, "tag"));
    place->addAlias(text(kind, "alias"));
    place->addLocation(location(kind, 46.9480456));
    place->addLocation(location(kind, 48));
    AuxiliaryData poi = place->auxiliaryData(0);
    poi.setExternalId(text(kind, "external"));
    poi.addProperty(QStringLiteral("phoneNumber"), text(kind, "phone"));
    poi.addProperty(QStringLiteral("emailAddress"), text(kind, "mail"));
    poi.addProperty(QStringLiteral("url"), QStringLiteral("https://a.example/?q=a%26b#c"));
    poi.addProperty(text(kind, "key"), text(kind, "value"));
    place->replaceAuxiliaryData(0, poi);
    return place;
}

// ------------------------------------------------------------------------------------------------------- the forms

PlacePointer throughBytes(const PlacePointer &place)
{
    char *bytes = nullptr;
    int size = 0;
    Place *read = nullptr;
    EXPECT_TRUE(Utilities::serialize(bytes, size, *place) && Utilities::deserialize(read, bytes, size));
    delete[] bytes;
    return PlacePointer(read);
}

template <PlaceJson::Texts TEXTS>
PlacePointer throughDocument(const PlacePointer &place)
{
    return PlaceJson::readPlace(PlaceJson::write(*place, TEXTS), TEXTS);
}

PlacePointer throughMapLink(const PlacePointer &place)
{
    auto read = std::make_unique<Place>();
    EXPECT_TRUE(Utilities::readMapUrl(QUrl(QString::fromLatin1(place->mapUrl().toEncoded())), *read));
    return read;
}

PlacePointer throughService(const PlacePointer &place)
{
    const Placesd service;
    const PlaceManager manager;
    EXPECT_EQ(manager.addPlace(place.get()), Error::Success);
    return PlacePointer(manager.getPlace(place->id()));
}

PlacePointer throughGeoJson(const PlacePointer &place)
{
    return placeOf(formats::toGeoJsonFeature(*place));
}

PlacePointer throughFile(const char *format, const PlacePointer &place)
{
    FormatFile read = readFile(format, writeFile(format, {place.get()}));
    EXPECT_EQ(read.members.size(), 1U);
    EXPECT_EQ(read.problem + read.members.at(0).problem, QString());
    return std::move(read.members.at(0).place);
}

constexpr struct
{
    const char *name;
    PlacePointer (*pass)(const PlacePointer &place);
    qint64 id; ///< Id of the place; a service does not accept an id of a stored place.
} FORMS[] = {
    {"bytes", throughBytes, 4711},
    {"JSON document", throughDocument<PlaceJson::Texts::Latin1>, 4711},
    {"JSON document, Unicode", throughDocument<PlaceJson::Texts::Unicode>, 4711},
    {"map link", throughMapLink, 4711},
    {"service", throughService, -1},
    {"GeoJSON", throughGeoJson, 4711},
    {"GPX", [](const PlacePointer &place) { return throughFile("gpx", place); }, 4711},
    {"KML", [](const PlacePointer &place) { return throughFile("kml", place); }, 4711},
    {"CSV", [](const PlacePointer &place) { return throughFile("csv", place); }, 4711},
    {"vCard", [](const PlacePointer &place) { return throughFile("vcard", place); }, 4711},
};

// ------------------------------------------------------------------------------------------------------ the members

Location first(const Place &place)
{
    return place.locationCount() > 0 ? place.location(0) : Location();
}

Address address(const Place &place)
{
    return first(place).address();
}

Coordinates position(const Place &place)
{
    return first(place).coordinates();
}

QString exact(double first, double second)
{
    return QStringLiteral("%1 %2").arg(first, 0, 'g', 17).arg(second, 0, 'g', 17);
}

const struct
{
    const char *name;
    QString (*get)(const Place &place);
} MEMBERS[] = {
    {"number", [](const Place &p) { return QString::number(p.id()); }},
    {"name", [](const Place &p) { return p.name(); }},
    {"description", [](const Place &p) { return p.description(); }},
    {"owner", [](const Place &p) { return p.owner(); }},
    {"source", [](const Place &p) { return p.source(); }},
    {"private", [](const Place &p) { return QString::number(p.isPrivate()); }},
    {"perimeter", [](const Place &p) { return QString::number(p.securityPerimeter()); }},
    {"certainty", [](const Place &p) { return QString::number(p.certainty()); }},
    {"usage count", [](const Place &p) { return QString::number(p.usageCount()); }},
    {"time of last use", [](const Place &p) { return QString::number(p.lastUsedTime()); }},
    {"times of storing and changing",
     [](const Place &p) { return QStringLiteral("%1 %2").arg(p.creationTime()).arg(p.updateTime()); }},
    {"expiry time", [](const Place &p) { return QString::number(p.expiryTime()); }},
    {"tags", [](const Place &p) { return p.tagCount() == 1 ? p.tag(0) : QString(); }},
    {"aliases", [](const Place &p) { return p.aliases().join(QLatin1Char('|')); }},
    {"address: label", [](const Place &p) { return address(p).label(); }},
    {"address: street, city, region, country, postal code",
     [](const Place &p) {
         const Address a = address(p);
         return a.street() + a.city() + a.region() + a.country() + a.postalCode();
     }},
    {"address: house number, country codes",
     [](const Place &p) {
         return address(p).houseNumber() + address(p).isoAlpha2CountryCode() + address(p).countryCode();
     }},
    {"address: campus, building, room",
     [](const Place &p) { return address(p).campus() + address(p).building() + address(p).room(); }},
    {"address: floor", [](const Place &p) { return QString::number(address(p).floor()); }},
    {"address: display lines",
     [](const Place &p) {
         return (address(p).compactAddressLines() + address(p).extendedAddressLines()).join(QLatin1Char('|'));
     }},
    {"latitude and longitude", [](const Place &p) { return exact(position(p).latitude(), position(p).longitude()); }},
    {"altitude", [](const Place &p) { return exact(position(p).altitude(), 0); }},
    {"accuracies",
     [](const Place &p) { return exact(position(p).horizontalAccuracy(), position(p).verticalAccuracy()); }},
    {"bounding box",
     [](const Place &p) {
         const BoundingBox box = first(p).boundingBox();
         return exact(box.topLeft().latitude(), box.bottomRight().longitude());
     }},
    {"virtual data", [](const Place &p) { return first(p).virtualData(); }},
    {"further locations",
     [](const Place &p) {
         const Location further = p.locationCount() == 2 ? p.location(1) : Location();
         return further.address().label() + exact(further.coordinates().latitude(), further.coordinates().altitude());
     }},
    {"phone, e-mail, web address",
     [](const Place &p) { return p.primaryPhoneNumber() + p.primaryEmailAddress() + p.primaryUrl().toString(); }},
    {"records: type, external id, properties",
     [](const Place &p) {
         QStringList all;
         for (int i = 0; i < p.auxiliaryDataCount(); ++i) {
             const QMap<QString, QString> properties = p.auxiliaryData(i).properties();
             all << p.auxiliaryData(i).type() << p.auxiliaryData(i).externalId() << properties.keys()
                 << properties.values();
         }
         return all.join(QLatin1Char('|'));
     }},
    {"records: number",
     [](const Place &p) { return QString::number(p.auxiliaryDataCount() > 0 ? p.auxiliaryData(0).id() : -1); }},
};

/// For each member, a row of the table: the words of all forms.
using Table = std::map<std::string, std::string>;

/// The table as the formats behave.
Table tried()
{
    Table table;
    for (const auto &form : FORMS) {
        const PlacePointer easy = form.pass(sample(Kind::Easy, form.id));
        const PlacePointer demanding = form.pass(sample(Kind::Demanding, form.id));
        for (const auto &member : MEMBERS) {
            const bool keepsEasy = member.get(*easy) == member.get(*sample(Kind::Easy, 4711));
            const bool keepsAll = keepsEasy && member.get(*demanding) == member.get(*sample(Kind::Demanding, 4711));
            table[member.name] += keepsAll ? " yes |" : keepsEasy ? " partly |" : " no |";
        }
    }
    return table;
}

/// The table in the document: the rows below the heading that names the forms.
Table documented()
{
    QFile file(QStringLiteral(SOURCES "/docs/formats.md"));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    QByteArray head = "| member |";
    for (const auto &form : FORMS)
        head += QByteArray(" ") + form.name + " |";
    Table table;
    bool inTable = false;
    for (const QByteArray &line : file.readAll().split('\n')) {
        const auto end = line.indexOf(" |", 2);
        if (inTable && line.startsWith("| ") && end > 0)
            table[line.mid(2, end - 2).toStdString()] = line.mid(end + 2).toStdString();
        inTable = line == head || (inTable && line.startsWith('|'));
    }
    return table;
}

} // namespace

TEST(Formats, TheFormsKeepWhatTheTableDocuments)
{
    NEEDS_VCARDS();
    EXPECT_EQ(documented(), tried());
}
