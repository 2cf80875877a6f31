// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

// The JSON documents of full places and headers: their members in order, for writing and reading.

#include "auxdata/AuxiliaryDataPrivate.h"
#include "model/AddressPrivate.h"
#include "model/CoordinatesPrivate.h"
#include "model/JsonMember.h"
#include "model/LocationPrivate.h"
#include "model/PlaceHeaderPrivate.h"
#include "model/PlacePrivate.h"
#include "places/ContactAuxiliaryData.h"
#include "places/ImageAuxiliaryData.h"
#include "places/PointOfInterestAuxiliaryData.h"
#include "places/ReservationAuxiliaryData.h"
#include "places/ReviewAuxiliaryData.h"
#include "protocol/Logger.h"
#include "protocol/PPSEncoder.h"

#include <QtCore/QSet>

namespace vela::platform::places
{

using json::read;
using json::readEach;
using json::readNumber;
using json::readObject;
using json::write;
using json::writeIfKnown;
using json::writeUnlessEmpty;

namespace
{

/// Status of a written document.
constexpr int WRITTEN = 1;

constexpr struct
{
    const char *name;
    AddressPrivate::Part part;
} ADDRESS_PARTS[] = {
    {"label", AddressPrivate::Label},
    {"room", AddressPrivate::Room},
    {"floor", AddressPrivate::Floor},
    {"building", AddressPrivate::Building},
    {"campus", AddressPrivate::Campus},
    {"houseNumber", AddressPrivate::HouseNumber},
    {"street", AddressPrivate::Street},
    {"city", AddressPrivate::City},
    {"region", AddressPrivate::Region},
    {"country", AddressPrivate::Country},
    {"postalCode", AddressPrivate::PostalCode},
    {"alpha2CountryCode", AddressPrivate::IsoAlpha2CountryCode},
    {"alpha3CountryCode", AddressPrivate::IsoAlpha3CountryCode},
};

void writeFloor(pps_encoder_t &encoder, const char *name, const AddressPrivate &address)
{
    if (address.hasValidFloor())
        write(encoder, name, address.floor());
}

void readFloor(pps_decoder_t &decoder, const char *name, AddressPrivate &address)
{
    int floor = 0;
    if (read(decoder, name, floor))
        address.setFloor(floor);
}

void writeLines(pps_encoder_t &encoder, const char *name, const QStringList &lines)
{
    if (!lines.isEmpty())
        write(encoder, name, AddressPrivate::addressLinesToTextBlob(lines));
}

void writeAddress(pps_encoder_t &encoder, const AddressPrivate &address)
{
    pps_encoder_start_object(&encoder, "address");
    for (const auto &[name, part] : ADDRESS_PARTS) {
        if (part == AddressPrivate::Floor)
            writeFloor(encoder, name, address);
        else
            writeUnlessEmpty(encoder, name, address.part(part));
    }
    writeLines(encoder, "extendedAddressLines", address.extendedAddressLines());
    writeLines(encoder, "compactAddressLines", address.compactAddressLines());
    pps_encoder_end_object(&encoder);
}

void readAddress(pps_decoder_t &decoder, AddressPrivate &address)
{
    for (const auto &[name, part] : ADDRESS_PARTS) {
        if (part == AddressPrivate::Floor)
            readFloor(decoder, name, address);
        else
            read(decoder, name, address.part(part));
    }
    QString lines;
    if (read(decoder, "extendedAddressLines", lines))
        address.setExtendedAddressLines(lines);
    if (read(decoder, "compactAddressLines", lines))
        address.setCompactAddressLines(lines);
}

void writeCoordinates(pps_encoder_t &encoder, const CoordinatesPrivate &point)
{
    pps_encoder_start_object(&encoder, "coordinates");
    writeIfKnown(encoder, "latitude", point.latitude);
    writeIfKnown(encoder, "longitude", point.longitude);
    writeIfKnown(encoder, "altitude", point.altitude);
    writeIfKnown(encoder, "horizontalAccuracy", point.horizontalAccuracy);
    writeIfKnown(encoder, "verticalAccuracy", point.verticalAccuracy);
    pps_encoder_end_object(&encoder);
}

void readCoordinates(pps_decoder_t &decoder, CoordinatesPrivate &point)
{
    read(decoder, "latitude", point.latitude);
    read(decoder, "longitude", point.longitude);
    read(decoder, "altitude", point.altitude);
    read(decoder, "horizontalAccuracy", point.horizontalAccuracy);
    read(decoder, "verticalAccuracy", point.verticalAccuracy);
}

void writeTags(pps_encoder_t &encoder, const QStringList &tags)
{
    if (tags.isEmpty())
        return;
    pps_encoder_start_array(&encoder, "tags");
    for (const QString &tag : tags)
        write(encoder, nullptr, tag);
    pps_encoder_end_array(&encoder);
}

/// Finds repeated tags by hash: a foreign document may contain too many for a search in the list.
void readTags(pps_decoder_t &decoder, PlacePrivate &place)
{
    QSet<QString> known;
    readEach(decoder, "tags", PPS_TYPE_ARRAY, [&] {
        QString tag;
        if (!read(decoder, nullptr, tag) || known.contains(tag))
            return;
        known.insert(tag);
        place.appendTag(tag);
    });
}

void writeRecord(pps_encoder_t &encoder, const AuxiliaryDataPrivate &record)
{
    pps_encoder_start_object(&encoder, nullptr);
    write(encoder, "id", record.id);
    write(encoder, "type", record.type);
    writeUnlessEmpty(encoder, "externalId", record.externalId);
    write(encoder, "persistable", record.persistable);
    pps_encoder_start_object(&encoder, "data");
    for (auto property = record.properties.begin(); property != record.properties.end(); ++property)
        write(encoder, json::toEightBit(property.key()).constData(), property.value());
    pps_encoder_end_object(&encoder);
    pps_encoder_end_object(&encoder);
}

void readProperty(pps_decoder_t &decoder, AuxiliaryData &record)
{
    const QString key = QString::fromLatin1(pps_decoder_name(&decoder));
    QString value;
    if (read(decoder, nullptr, value))
        record.addProperty(key, value);
}

template <typename View>
AuxiliaryData asSeenBy(const AuxiliaryData &record)
{
    return View(record);
}

/// Converts a record to the class of its type and back; a record of another type is unchanged.
AuxiliaryData convertedByType(const AuxiliaryData &record)
{
    const struct
    {
        QString type;
        AuxiliaryData (*convert)(const AuxiliaryData &);
    } classes[] = {
        {AuxiliaryData::TypeContact, asSeenBy<ContactAuxiliaryData>},
        {AuxiliaryData::TypePointOfInterest, asSeenBy<PointOfInterestAuxiliaryData>},
        {QLatin1String(AuxiliaryData::TypeReview), asSeenBy<ReviewAuxiliaryData>},
        {QLatin1String(AuxiliaryData::TypeImage), asSeenBy<ImageAuxiliaryData>},
        {QLatin1String(AuxiliaryData::TypeReservation), asSeenBy<ReservationAuxiliaryData>},
    };
    for (const auto &entry : classes) {
        if (entry.type == record.type())
            return entry.convert(record);
    }
    return record;
}

/// Reads the record in the current element and adds it to the place.
void readRecord(pps_decoder_t &decoder, PlacePrivate &place)
{
    qint64 id = PlaceId::UNDEFINED_PERSISTED_ID;
    QString type;
    read(decoder, "id", id);
    if (!read(decoder, "type", type)) {
        Logger::warn("PlacePrivate::fromJSON missing aux type");
        return;
    }
    AuxiliaryData record(id, type);
    AuxiliaryDataPrivate &data = *AuxiliaryDataPrivate::fromPublic(record);
    read(decoder, "externalId", data.externalId);
    read(decoder, "persistable", data.persistable);
    readEach(decoder, "data", PPS_TYPE_OBJECT, [&] { readProperty(decoder, record); });
    place.addAuxiliaryData(convertedByType(record));
}

/// Writes a document as one object with the members that `writeMembers` writes.
template <typename Write>
bool writeDocument(QString &out, Write writeMembers)
{
    PPSEncoder encoder;
    if (!encoder.init())
        return false;
    pps_encoder_start_object(&encoder, nullptr);
    writeMembers(*&encoder);
    pps_encoder_end_object(&encoder);
    const char *text = pps_encoder_buffer(&encoder);
    if (!text)
        return false;
    out = QString::fromLatin1(text, pps_encoder_length(&encoder));
    return true;
}

} // namespace

void AbstractPlacePrivate::encodeJSONCommonData(pps_encoder_t &encoder, int &status) const
{
    status = WRITTEN;
    write(encoder, "id", m_id);
    writeUnlessEmpty(encoder, "name", m_name);
    writeUnlessEmpty(encoder, "description", m_description);
    writeUnlessEmpty(encoder, "owner", m_owner);
    write(encoder, "restricted", m_isPrivate);
    write(encoder, "certainty", m_certainty);
    write(encoder, "perimeter", m_securityPerimeter);
    write(encoder, "lastUsedTime", m_lastUsedTime);
}

bool AbstractPlacePrivate::decodeJSONCommonData(pps_decoder_t &decoder)
{
    read(decoder, "id", m_id);
    read(decoder, "name", m_name);
    read(decoder, "description", m_description);
    read(decoder, "owner", m_owner);
    read(decoder, "restricted", m_isPrivate);
    readNumber(decoder, "certainty", m_certainty);
    readNumber(decoder, "perimeter", m_securityPerimeter);
    read(decoder, "lastUsedTime", m_lastUsedTime);
    return true;
}

void AbstractPlacePrivate::encodeJSONLocation(pps_encoder_t &encoder, const Location &location) const
{
    const LocationPrivate &data = *LocationPrivate::privateFromPublic(&location);
    pps_encoder_start_object(&encoder, "location");
    // The id of the place, not of the location: a location that is read has the id of its place.
    write(encoder, "id", m_id);
    writeAddress(encoder, *AddressPrivate::privateFromPublic(&data.m_address));
    writeCoordinates(encoder, *CoordinatesPrivate::privateFromPublic(&data.m_coordinates));
    pps_encoder_end_object(&encoder);
}

bool AbstractPlacePrivate::decodeJSONLocation(pps_decoder_t &decoder, Location &location)
{
    LocationPrivate &data = *LocationPrivate::privateFromPublic(&location);
    return readObject(decoder, "location", [&] {
        read(decoder, "id", data.m_id);
        readObject(decoder, "address",
                   [&] { readAddress(decoder, *AddressPrivate::privateFromPublic(&data.m_address)); });
        readObject(decoder, "coordinates",
                   [&] { readCoordinates(decoder, *CoordinatesPrivate::privateFromPublic(&data.m_coordinates)); });
    });
}

bool PlacePrivate::toJSON(QString &out, int &status) const
{
    return writeDocument(out, [&](pps_encoder_t &encoder) {
        encodeJSONCommonData(encoder, status);
        write(encoder, "complete", true);
        write(encoder, "usageCount", m_usageCount);
        write(encoder, "expiryTime", m_expiredTime);
        write(encoder, "creationTime", m_createdTime);
        write(encoder, "updateTime", m_updatedTime);
        writeTags(encoder, m_tags);
        if (!m_locations.isEmpty())
            encodeJSONLocation(encoder, m_locations.first());
        pps_encoder_start_array(&encoder, "contents");
        for (const AuxiliaryData &record : m_auxiliaryData)
            writeRecord(encoder, *AuxiliaryDataPrivate::fromPublic(record));
        pps_encoder_end_array(&encoder);
    });
}

bool PlacePrivate::fromJSON(pps_decoder_t &decoder, int)
{
    *this = PlacePrivate();
    const bool done = decodeJSONCommonData(decoder);
    read(decoder, "usageCount", m_usageCount);
    read(decoder, "expiryTime", m_expiredTime);
    read(decoder, "creationTime", m_createdTime);
    read(decoder, "updateTime", m_updatedTime);
    readTags(decoder, *this);
    if (Location location; decodeJSONLocation(decoder, location))
        addLocation(location);
    readEach(decoder, "contents", PPS_TYPE_ARRAY, [&] {
        const PPSDecoder::PushResourceManager element(decoder, nullptr);
        readRecord(decoder, *this);
    });
    return done;
}

bool PlaceHeaderPrivate::toJSON(QString &out, int &status) const
{
    return writeDocument(out, [&](pps_encoder_t &encoder) {
        encodeJSONCommonData(encoder, status);
        writeUnlessEmpty(encoder, "__externalId", m_externalId);
        writeUnlessEmpty(encoder, "__auxDataType", m_auxiliaryDataType);
        write(encoder, "__dataMask", m_dataMask);
        write(encoder, "complete", false);
        writeUnlessEmpty(encoder, "primaryEmailAddress", m_primaryEmailAddress);
        writeUnlessEmpty(encoder, "primaryPhoneNumber", m_primaryPhoneNumber);
        writeUnlessEmpty(encoder, "primaryUrl", m_primaryUrl.toString());
        encodeJSONLocation(encoder, m_location);
    });
}

bool PlaceHeaderPrivate::fromJSON(pps_decoder_t &decoder, int)
{
    *this = PlaceHeaderPrivate();
    m_location.setZoom(Location().zoom()); // assignment does not copy the zoom
    const bool done = decodeJSONCommonData(decoder);
    read(decoder, "__externalId", m_externalId);
    read(decoder, "__auxDataType", m_auxiliaryDataType);
    read(decoder, "__dataMask", m_dataMask);
    read(decoder, "primaryEmailAddress", m_primaryEmailAddress);
    read(decoder, "primaryPhoneNumber", m_primaryPhoneNumber);
    if (QString url; read(decoder, "primaryUrl", url))
        m_primaryUrl = QUrl(url);
    decodeJSONLocation(decoder, m_location);
    return done;
}

} // namespace vela::platform::places
