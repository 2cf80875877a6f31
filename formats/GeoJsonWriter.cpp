// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "GeoJsonWriter.h"

#include "ExactJson.h"
#include "Feature.h"
#include "JsonWriter.h"
#include "Vocabulary.h"

#include <places/Place.h>
#include <places/PlaceHeader.h>
#include <places/Utilities.h>

#include <QtCore/QDateTime>

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace formats
{

using namespace vela::platform::places;

namespace
{

/// Form of the times in a feature.
enum class Times
{
    Seconds, ///< As the reader expects them.
    Utc,     ///< utcTime(); unset ones are left out.
};

void writeTime(JsonWriter &out, const char *name, quint64 seconds, Times times)
{
    if (times == Times::Seconds)
        out.member(name, seconds);
    else
        out.member(name, utcTime(seconds));
}

// ------------------------------------------------------------------------------------------------------- locations

/// Longitude first, altitude third (RFC 7946).
void writePosition(JsonWriter &out, const Coordinates &position)
{
    out.key("coordinates");
    out.array([&] {
        out.number(position.longitude());
        out.number(position.latitude());
        if (std::isfinite(position.altitude()))
            out.number(position.altitude());
    });
}

void writeGeometry(JsonWriter &out, const Coordinates &position)
{
    out.key("geometry");
    if (!position.isValid())
        return out.null();
    out.object([&] {
        out.member("type", QStringLiteral("Point"));
        writePosition(out, position);
    });
}

/// South-west corner first, then north-east.
void writeBox(JsonWriter &out, const BoundingBox &box)
{
    if (!box.isValid())
        return;
    const Coordinates topLeft = box.topLeft();
    const Coordinates bottomRight = box.bottomRight();
    const bool hasAltitudes = std::isfinite(topLeft.altitude()) && std::isfinite(bottomRight.altitude());
    out.key("bbox");
    out.array([&] {
        out.number(topLeft.longitude());
        out.number(bottomRight.latitude());
        if (hasAltitudes)
            out.number(bottomRight.altitude());
        out.number(bottomRight.longitude());
        out.number(topLeft.latitude());
        if (hasAltitudes)
            out.number(topLeft.altitude());
    });
}

void writeAddress(JsonWriter &out, const Address &address)
{
    for (const auto &part : vocabulary::ADDRESS_TEXTS)
        out.member(part.name, (address.*part.get)());
    if (address.hasValidFloor())
        out.member(vocabulary::FLOOR, qint64(address.floor()));
    for (const auto &part : vocabulary::ADDRESS_LINES)
        out.member(part.name, (address.*part.get)());
}

/// Writes a location without its position and box; these are members of the feature.
void writeLocation(JsonWriter &out, const Location &location)
{
    writeAddress(out, location.address());
    const Coordinates position = location.coordinates();
    if (position.isValid()) {
        out.member(vocabulary::HORIZONTAL_ACCURACY, double(position.horizontalAccuracy()));
        out.member(vocabulary::VERTICAL_ACCURACY, double(position.verticalAccuracy()));
    }
    out.member(vocabulary::VIRTUAL_DATA, location.virtualData());
    if (location.virtualDataType() != VirtualLocationType::None)
        out.member(vocabulary::VIRTUAL_DATA_TYPE, qint64(location.virtualDataType()));
}

void writeOtherLocations(JsonWriter &out, const Place &place, int shown)
{
    if (place.locationCount() < 2)
        return;
    out.member(vocabulary::LOCATION_INDEX, qint64(shown));
    out.key(vocabulary::OTHER_LOCATIONS);
    out.array([&] {
        for (int i = 0; i < place.locationCount(); ++i) {
            if (i == shown)
                continue;
            const Location location = place.location(i);
            out.object([&] {
                if (location.coordinates().isValid())
                    writePosition(out, location.coordinates());
                writeBox(out, location.boundingBox());
                writeLocation(out, location);
            });
        }
    });
}

// --------------------------------------------------------------------------------------------------------- records

void writeRecords(JsonWriter &out, const Place &place)
{
    QList<AuxiliaryData> records;
    for (int i = 0; i < place.auxiliaryDataCount(); ++i) {
        if (const AuxiliaryData data = place.auxiliaryData(i); !vocabulary::isForeign(data.type()))
            records.append(data);
    }
    out.list(vocabulary::RECORDS, records,
             [&out](const AuxiliaryData &data) { out.object([&] { writeRecord(out, data); }); });
}

/// Deepest nesting of a foreign member, which is two levels deep: in the properties of a feature.
constexpr int MAX_FOREIGN_DEPTH = MAX_DEPTH - 2;

/// Writes JSON; fails beyond the nesting depth that a reader accepts.
class ShallowWriter : public rapidjson::Writer<rapidjson::StringBuffer>
{
public:
    using Writer::Writer;

    bool StartObject() { return ++m_depth <= MAX_FOREIGN_DEPTH && Writer::StartObject(); }
    bool StartArray() { return ++m_depth <= MAX_FOREIGN_DEPTH && Writer::StartArray(); }
    bool EndObject(rapidjson::SizeType count) { return m_depth-- > 0 && Writer::EndObject(count); }
    bool EndArray(rapidjson::SizeType count) { return m_depth-- > 0 && Writer::EndArray(count); }

private:
    int m_depth = 0;
};

/// The text itself if it is JSON, else the text as a JSON string.
QByteArray toJsonText(const QString &value)
{
    const QByteArray bytes = value.toUtf8();
    rapidjson::StringBuffer text;
    if (ExactNumbers<ShallowWriter> writer(text); writer.parse(bytes.constData()).IsError()) {
        text.Clear();
        rapidjson::Writer<rapidjson::StringBuffer>(text).String(bytes.constData(),
                                                                static_cast<rapidjson::SizeType>(bytes.size()));
    }
    return QByteArray(text.GetString(), static_cast<int>(text.GetSize()));
}

/// Members of an imported file that a place cannot hold. The import keeps them in a record, and an export writes them
/// back to the same object. A member that an import would read as a value of the place is left out.
Foreign foreignOf(const Place &place, const char *type, bool (*isForeign)(const QString &, const rapidjson::Value &))
{
    Foreign foreign;
    for (int i = 0; i < place.auxiliaryDataCount(); ++i) {
        const AuxiliaryData data = place.auxiliaryData(i);
        if (data.type() != QLatin1String(type))
            continue;
        const QMap<QString, QString> members = data.properties();
        for (auto member = members.begin(); member != members.end(); ++member) {
            const QByteArray text = toJsonText(*member);
            ExactDocument value;
            if (!value.read(text.constData()).IsError() && isForeign(member.key(), value))
                foreign.insert(member.key(), text);
        }
    }
    return foreign;
}

// -------------------------------------------------------------------------------------------------------- features

void writeNames(JsonWriter &out, const AbstractPlace &place)
{
    out.member(vocabulary::NAME, place.name());
    out.member(vocabulary::DESCRIPTION, place.description());
}

/// Values that every list of places shows. They come from any record.
void writePrimaryValues(JsonWriter &out, const AbstractPlace &place, Times times)
{
    out.member(vocabulary::PHONE, place.primaryPhoneNumber());
    out.member(vocabulary::EMAIL, place.primaryEmailAddress());
    out.member(vocabulary::URL, place.primaryUrl().toString(QUrl::FullyEncoded));
    out.member(vocabulary::FAVORITE, place.isFavorite());
    out.member(vocabulary::OWNER, place.owner());
    writeTime(out, vocabulary::LAST_USED_TIME, place.lastUsedTime(), times);
}

QStringList tagsOf(const Place &place)
{
    QStringList tags;
    for (int i = 0; i < place.tagCount(); ++i)
        tags.append(place.tag(i));
    return tags;
}

void writeProperties(JsonWriter &out, const Place &place, int shown, Times times)
{
    const Foreign foreign = foreignOf(place, vocabulary::FOREIGN_PROPERTIES, isForeignProperty);
    out.omitEmpty(foreign);
    writeNames(out, place);
    if (place.locationCount() > 0)
        writeLocation(out, place.location(shown));
    writePrimaryValues(out, place, times);
    out.list(vocabulary::TAGS, tagsOf(place));
    out.list(vocabulary::ALIASES, place.aliases());
    out.member(vocabulary::SOURCE, place.source());
    out.member(vocabulary::PRIVATE, place.isPrivate());
    if (place.expiryTime() > 0)
        writeTime(out, vocabulary::EXPIRY_TIME, place.expiryTime(), times);
    out.member(vocabulary::USAGE_COUNT, qint64(place.usageCount()));
    writeTime(out, vocabulary::CREATION_TIME, place.creationTime(), times);
    writeTime(out, vocabulary::UPDATE_TIME, place.updateTime(), times);
    writeOtherLocations(out, place, shown);
    writeRecords(out, place);
    out.foreign(foreign);
}

void writeId(JsonWriter &out, const AbstractPlace &place)
{
    if (place.isPersisted())
        out.member("id", place.id());
}

/// The position again, with named members, and its distance from the centre.
void writePoint(JsonWriter &out, const Coordinates &position, const Coordinates &centre)
{
    if (!position.isValid())
        return;
    out.key(vocabulary::POSITION);
    out.object([&] {
        out.member(vocabulary::LATITUDE, position.latitude());
        out.member(vocabulary::LONGITUDE, position.longitude());
    });
    out.member(vocabulary::DISTANCE, roundedDistance(centre, position));
}

/// The values of a place that its header has.
void writeShortFeature(JsonWriter &out, const AbstractPlace &place, const Coordinates &centre)
{
    out.object([&] {
        out.member("type", QStringLiteral("Feature"));
        writeId(out, place);
        writeGeometry(out, place.primaryCoordinates());
        out.key("properties");
        out.object([&] {
            writeNames(out, place);
            writeAddress(out, place.primaryAddress());
            writePrimaryValues(out, place, Times::Utc);
            writePoint(out, place.primaryCoordinates(), centre);
        });
    });
}

template <typename Members>
QByteArray feature(const Place &place, Times times, Members members)
{
    JsonWriter out;
    const int shown = shownLocation(place);
    out.object([&] {
        out.member("type", QStringLiteral("Feature"));
        if (place.locationCount() > 0)
            writeBox(out, place.location(shown).boundingBox());
        members(out);
        writeGeometry(out, place.primaryCoordinates());
        out.key("properties");
        out.object([&] { writeProperties(out, place, shown, times); });
    });
    return out.result();
}

} // namespace

int shownLocation(const Place &place)
{
    for (int i = 0; i < place.locationCount(); ++i) {
        if (place.location(i).coordinates().isValid())
            return i;
    }
    return 0;
}

QByteArray toGeoJson(const Place &place)
{
    return feature(place, Times::Utc, [&](JsonWriter &out) { writeId(out, place); });
}

QByteArray toGeoJsonFeature(const Place &place)
{
    return feature(place, Times::Seconds, [&](JsonWriter &out) {
        out.foreign(foreignOf(place, vocabulary::FOREIGN_MEMBERS, isForeignMember));
    });
}

QByteArray toGeoJson(const PlaceList &places, bool hasMore, const Coordinates &centre)
{
    JsonWriter out;
    out.object([&] { writeCollection(out, places, hasMore, centre); });
    return out.result();
}

void writeCollection(JsonWriter &out, const PlaceList &places, bool hasMore, const Coordinates &centre)
{
    out.member("type", QStringLiteral("FeatureCollection"));
    out.member("hasMore", hasMore);
    out.key("features");
    out.array([&] {
        for (const AbstractPlace *place : places)
            writeShortFeature(out, *place, centre);
    });
}

void writeRecord(JsonWriter &out, const AuxiliaryData &data)
{
    const QMap<QString, QString> properties = data.properties();
    out.member("type", data.type());
    out.member("externalId", data.externalId());
    out.key("properties");
    out.object([&] {
        for (auto property = properties.begin(); property != properties.end(); ++property) {
            out.key(property.key());
            out.text(property.value());
        }
    });
}

QString utcTime(quint64 seconds)
{
    if (seconds == 0)
        return {};
    return seconds > LAST_SECOND
               ? QString::number(seconds)
               : QDateTime::fromSecsSinceEpoch(static_cast<qint64>(seconds), Qt::UTC).toString(Qt::ISODate);
}

double roundedDistance(const Coordinates &a, const Coordinates &b)
{
    constexpr double DECIMETRES = 10; // in a metre
    return a.isValid() && b.isValid() ? std::round(Utilities::calculateDistanceInMeter(a, b) * DECIMETRES) / DECIMETRES
                                      : std::nan("");
}

} // namespace formats
