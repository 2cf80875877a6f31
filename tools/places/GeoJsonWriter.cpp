// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "GeoJsonWriter.h"

#include "ExactJson.h"
#include "Vocabulary.h"

#include <places/Place.h>
#include <places/PlaceHeader.h>

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <cmath>

namespace tool
{

using namespace geojson;
using namespace vela::platform::places;

namespace
{

/// Writes members that have a value and leaves out those that do not.
class Writer
{
public:
    template <typename Body>
    void object(Body body)
    {
        m_writer.StartObject();
        body();
        m_writer.EndObject();
    }
    template <typename Body>
    void array(Body body)
    {
        m_writer.StartArray();
        body();
        m_writer.EndArray();
    }
    void key(const char *name) { m_writer.Key(name); }
    void text(const QString &text)
    {
        const QByteArray bytes = text.toUtf8();
        m_writer.String(bytes.constData(), static_cast<rapidjson::SizeType>(bytes.size()));
    }
    void number(double value) { m_writer.Double(value); }
    void null() { m_writer.Null(); }

    void key(const QString &name)
    {
        const QByteArray bytes = name.toUtf8();
        m_writer.Key(bytes.constData(), static_cast<rapidjson::SizeType>(bytes.size()));
    }
    void member(const QString &name, const QString &value)
    {
        if (value.isEmpty())
            return;
        key(name);
        text(value);
    }
    void member(const char *name, const QString &value) { member(QString::fromLatin1(name), value); }
    void member(const char *name, qint64 value)
    {
        key(name);
        m_writer.Int64(value);
    }
    void member(const char *name, bool value)
    {
        key(name);
        m_writer.Bool(value);
    }
    void member(const char *name, double value)
    {
        if (!std::isfinite(value))
            return;
        key(name);
        number(value);
    }
    void member(const char *name, const QStringList &values)
    {
        if (!values.isEmpty())
            list(name, values);
    }
    /// A list that is written even when it is empty.
    void list(const char *name, const QStringList &values)
    {
        key(name);
        list(values);
    }
    void list(const QStringList &values)
    {
        array([&] {
            for (const QString &value : values)
                text(value);
        });
    }
    /// A value that is JSON text already; a text that is none is written as a text.
    void json(const QString &value)
    {
        const QByteArray bytes = value.toUtf8();
        rapidjson::StringBuffer checked;
        ExactNumbers<rapidjson::Writer<rapidjson::StringBuffer>> writer(checked);
        if (!writer.parse(bytes.constData()).IsError())
            m_writer.RawValue(checked.GetString(), checked.GetSize(), rapidjson::kObjectType);
        else
            text(value);
    }
    QByteArray result() const { return QByteArray(m_text.GetString(), static_cast<int>(m_text.GetSize())); }

private:
    rapidjson::StringBuffer m_text;
    rapidjson::Writer<rapidjson::StringBuffer> m_writer{m_text};
};

// ------------------------------------------------------------------------------------------------------- locations

/// Longitude first, altitude third.
void writePosition(Writer &out, const Coordinates &position)
{
    out.key("coordinates");
    out.array([&] {
        out.number(position.longitude());
        out.number(position.latitude());
        if (std::isfinite(position.altitude()))
            out.number(position.altitude());
    });
}

void writeGeometry(Writer &out, const Coordinates &position)
{
    out.key("geometry");
    if (!position.isValid())
        return out.null();
    out.object([&] {
        out.member("type", QStringLiteral("Point"));
        writePosition(out, position);
    });
}

/// The south-west corner and the north-east one.
void writeBox(Writer &out, const BoundingBox &box)
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

void writeAddress(Writer &out, const Address &address)
{
    for (const auto &part : vocabulary::ADDRESS_TEXTS)
        out.member(part.name, (address.*part.get)());
    if (address.hasValidFloor())
        out.member(vocabulary::FLOOR, qint64(address.floor()));
    for (const auto &part : vocabulary::ADDRESS_LINES)
        out.member(part.name, (address.*part.get)());
}

/// Everything of a location but its position and box, which stand elsewhere.
void writeLocation(Writer &out, const Location &location)
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

/// Index of the location that the feature's geometry shows: the first that has a position, else the first.
int shownLocation(const Place &place)
{
    for (int i = 0; i < place.locationCount(); ++i) {
        if (place.location(i).coordinates().isValid())
            return i;
    }
    return 0;
}

void writeOtherLocations(Writer &out, const Place &place, int shown)
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

bool isForeign(const AuxiliaryData &data)
{
    return data.type() == QLatin1String(vocabulary::FOREIGN_PROPERTIES)
           || data.type() == QLatin1String(vocabulary::FOREIGN_MEMBERS);
}

void writeRecords(Writer &out, const Place &place)
{
    out.key(vocabulary::RECORDS);
    out.array([&] {
        for (int i = 0; i < place.auxiliaryDataCount(); ++i) {
            const AuxiliaryData data = place.auxiliaryData(i);
            if (isForeign(data))
                continue;
            const QMap<QString, QString> properties = data.properties();
            out.object([&] {
                out.member("type", data.type());
                out.member("externalId", data.externalId());
                out.key("properties");
                out.object([&] {
                    for (auto property = properties.begin(); property != properties.end(); ++property) {
                        out.key(property.key());
                        out.text(property.value());
                    }
                });
            });
        }
    });
}

/// What an import could not take in and kept, back where it was.
void writeForeign(Writer &out, const Place &place, const char *type)
{
    for (int i = 0; i < place.auxiliaryDataCount(); ++i) {
        const AuxiliaryData data = place.auxiliaryData(i);
        if (data.type() != QLatin1String(type))
            continue;
        const QMap<QString, QString> members = data.properties();
        for (auto member = members.begin(); member != members.end(); ++member) {
            out.key(member.key());
            out.json(member.value());
        }
    }
}

// -------------------------------------------------------------------------------------------------------- features

void writeNames(Writer &out, const AbstractPlace &place)
{
    out.member(vocabulary::NAME, place.name());
    out.member(vocabulary::DESCRIPTION, place.description());
}

/// What every list of places shows, whatever record it comes from.
void writePrimaryValues(Writer &out, const AbstractPlace &place)
{
    out.member(vocabulary::PHONE, place.primaryPhoneNumber());
    out.member(vocabulary::EMAIL, place.primaryEmailAddress());
    out.member(vocabulary::URL, place.primaryUrl().toString(QUrl::FullyEncoded));
    out.member(vocabulary::FAVORITE, place.isFavorite());
    out.member(vocabulary::OWNER, place.owner());
    out.member(vocabulary::LAST_USED_TIME, static_cast<qint64>(place.lastUsedTime()));
}

QStringList tagsOf(const Place &place)
{
    QStringList tags;
    for (int i = 0; i < place.tagCount(); ++i)
        tags.append(place.tag(i));
    return tags;
}

void writeProperties(Writer &out, const Place &place, int shown)
{
    writeNames(out, place);
    if (place.locationCount() > 0)
        writeLocation(out, place.location(shown));
    writePrimaryValues(out, place);
    out.list(vocabulary::TAGS, tagsOf(place));
    out.list(vocabulary::ALIASES, place.aliases());
    out.member(vocabulary::SOURCE, place.source());
    out.member(vocabulary::PRIVATE, place.isPrivate());
    if (place.expiryTime() > 0)
        out.member(vocabulary::EXPIRY_TIME, static_cast<qint64>(place.expiryTime()));
    out.member(vocabulary::USAGE_COUNT, qint64(place.usageCount()));
    out.member(vocabulary::CREATION_TIME, static_cast<qint64>(place.creationTime()));
    out.member(vocabulary::UPDATE_TIME, static_cast<qint64>(place.updateTime()));
    writeOtherLocations(out, place, shown);
    writeRecords(out, place);
    writeForeign(out, place, vocabulary::FOREIGN_PROPERTIES);
}

template <typename Members>
QByteArray feature(const Place &place, Members members)
{
    Writer out;
    const int shown = shownLocation(place);
    out.object([&] {
        out.member("type", QStringLiteral("Feature"));
        members(out);
        if (place.locationCount() > 0)
            writeBox(out, place.location(shown).boundingBox());
        writeGeometry(out, place.primaryCoordinates());
        out.key("properties");
        out.object([&] { writeProperties(out, place, shown); });
    });
    return out.result();
}

} // namespace

QByteArray toGeoJson(const Place &place)
{
    return feature(place, [&](Writer &out) {
        if (place.isPersisted())
            out.member("id", place.id());
    });
}

QByteArray toGeoJsonFeature(const Place &place)
{
    return feature(place, [&](Writer &out) { writeForeign(out, place, vocabulary::FOREIGN_MEMBERS); });
}

QByteArray toGeoJson(const QList<PlaceHeader *> &places)
{
    Writer out;
    out.object([&] {
        out.member("type", QStringLiteral("FeatureCollection"));
        out.key("features");
        out.array([&] {
            for (const PlaceHeader *place : places) {
                out.object([&] {
                    out.member("type", QStringLiteral("Feature"));
                    out.member("id", place->id());
                    writeGeometry(out, place->primaryCoordinates());
                    out.key("properties");
                    out.object([&] {
                        writeNames(out, *place);
                        writeAddress(out, place->primaryAddress());
                        writePrimaryValues(out, *place);
                    });
                });
            }
        });
    });
    return out.result();
}

QByteArray toJson(const QStringList &texts)
{
    Writer out;
    out.list(texts);
    return out.result();
}

} // namespace tool
