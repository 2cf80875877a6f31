// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "auxdata/AuxiliaryDataPrivate.h"
#include "model/LocationPrivate.h"
#include "model/PlacePrivate.h"
#include "model/ProviderData.h"
#include "places/Place.h"
#include "support/Wire.h"

#include <limits>

/// A place with a value in every field, and its records on the wire.
namespace sample
{

using namespace vela::platform::places;

constexpr double NOT_SET = std::numeric_limits<double>::quiet_NaN();
constexpr float NO_ACCURACY = std::numeric_limits<float>::quiet_NaN();

inline Provider provider(const QString &name = QStringLiteral("guide"))
{
    Provider provider;
    ProviderData &data = *ProviderData::fromPublic(provider);
    data.name = name;
    data.url = QUrl(QStringLiteral("https://guide.example/"));
    data.canRequestAdditionalData = true;
    data.supportedDataTypes = QStringList{QStringLiteral("poi"), QStringLiteral("lbs-image")};
    return provider;
}

class FullPlace : public Place
{
public:
    explicit FullPlace(qint64 id = 42);
    PlacePrivate &data() { return *PlacePrivate::privateFromPublic(this); }
};

inline FullPlace::FullPlace(qint64 id)
{
    Address address;
    address.setLabel(QStringLiteral("Café au lac"));
    address.setRoom(QStringLiteral("2b"));
    address.setFloor(-1);
    address.setBuilding(QStringLiteral("B"));
    address.setCampus(QStringLiteral("C"));
    address.setHouseNumber(QStringLiteral("1"));
    address.setStreet(QStringLiteral("Quai 1"));
    address.setCity(QStringLiteral("Genève"));
    address.setRegion(QStringLiteral("GE"));
    address.setCountry(QStringLiteral("Suisse"));
    address.setPostalCode(QStringLiteral("1201"));
    address.setIsoAlpha2CountryCode(QStringLiteral("CH"));
    address.setCountryCode(QStringLiteral("CHE"));
    address.setCompactAddressLines({QStringLiteral("Quai 1"), QStringLiteral("Genève")});
    address.setExtendedAddressLines({QStringLiteral("E")});
    Coordinates coordinates(46.2, 6.15);
    coordinates.setHorizontalAccuracy(12.5F);
    Location location(7);
    location.setAddress(address);
    location.setCoordinates(coordinates);
    LocationPrivate::privateFromPublic(&location)->setAddressUsedToGeocode(QStringLiteral("quai"));

    AuxiliaryData poi(9, AuxiliaryData::TypePointOfInterest);
    poi.setExternalId(QStringLiteral("x:1"));
    poi.addProperty(QStringLiteral("phoneNumber"), QStringLiteral("+41 22"));
    poi.addProperty(QStringLiteral("emailAddress"), QStringLiteral("a@b.example"));
    AuxiliaryDataPrivate::fromPublic(poi)->setProvider(provider());

    PlacePrivate &data = this->data();
    data.setName(QStringLiteral("Café"));
    data.setDescription(QStringLiteral("by the lake"));
    data.setOwner(QStringLiteral("app"));
    data.setPrivate(true);
    data.setUsageCount(3);
    data.setSource(AbstractPlace::SourceManualInput);
    data.setCreatedTime(1000);
    data.setUpdatedTime(2000);
    data.setExpiredTime(3000);
    data.setLastUsedTime(4000);
    data.setSearchTerm(QStringLiteral("cafe"));
    data.setSecurityPerimeter(vela::system::SecurityPerimeter::Work);
    data.setCertainty(SearchResultCertainty::Likely);
    data.setPersistenceMask(3);
    data.addLocation(location);
    data.m_locations[0].setZoom(12);
    data.addAuxiliaryData(poi);
    data.addTag(QStringLiteral("lbs-favorite"));
    data.addAlias(QStringLiteral("Lakeside"));
    data.setId(id);
}

inline wire::Fields providerFields(const std::string &name = "guide")
{
    using namespace wire;
    return Fields{text(name), text("https://guide.example/"), flag(true)} + texts({"poi", "lbs-image"});
}

inline wire::Fields locationFields()
{
    using namespace wire;
    const Fields corner = coordinate(NOT_SET, NOT_SET, NOT_SET, NO_ACCURACY, NO_ACCURACY);
    return Fields{i64(7), i32(12)} + coordinate(NOT_SET, 46.2, 6.15, 12.5F, NO_ACCURACY)
           + Fields{text("Café au lac"), text("2b"),     i32(-1),        text("B"),  text("C"),
                    text("1"),           text("Quai 1"), text("Genève"), text("GE"), text("Suisse"),
                    text("CH"),          text("CHE"),    text("1201")}
           + texts({"Quai 1", "Genève"}) + texts({"E"}) + Fields{i32(0), text(""), text("quai")} + corner + corner;
}

inline wire::Fields auxiliaryFields()
{
    using namespace wire;
    return Fields{i32(1), i64(9), text("x:1"), text("poi"), flag(true)} + providerFields()
           + Fields{i32(2), text("emailAddress"), text("a@b.example"), text("phoneNumber"), text("+41 22")};
}

/// The common fields of full places and headers.
inline wire::Fields commonFields(bool header, long long mask, qint64 id = 42, const std::string &term = "cafe")
{
    using namespace wire;
    return {i64(id),
            text("Café"),
            text("by the lake"),
            text("app"),
            flag(true),
            i32(3),
            text("lbs-manual-input"),
            i64(1000),
            i64(2000),
            i64(3000),
            i64(4000),
            flag(header),
            i64(mask),
            i32(3),
            text(term),
            i32(2),
            i32(2)};
}

inline wire::Fields placeFields(qint64 id = 42, const std::string &term = "cafe")
{
    return commonFields(false, 0, id, term) + wire::Fields{wire::i32(1)} + locationFields() + auxiliaryFields()
           + wire::texts({"lbs-favorite"}) + wire::texts({"Lakeside"});
}

/// Physical location, coordinates, auxiliary data, point of interest, tag, favourite.
constexpr long long MASK = 0x1 | 0x4 | 0x20 | 0x100 | 0x800 | 0x1000;

inline wire::Fields headerFields(qint64 id = 42)
{
    using namespace wire;
    return commonFields(true, MASK, id) + Fields{text("a@b.example")} + locationFields()
           + Fields{text("+41 22"), text("https://cafe.example/"), text("x:1"), text("poi")};
}

} // namespace sample
