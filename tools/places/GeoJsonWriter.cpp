// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "GeoJsonWriter.h"

#include "ExactJson.h"
#include "Feature.h"
#include "Vocabulary.h"

#include <places/Place.h>
#include <places/PlaceHeader.h>

#include <QtCore/QMap>
#include <QtCore/QSet>

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace tool
{

using namespace geojson;
using namespace vela::platform::places;

namespace
{

/// Members that a place has nothing for, as JSON texts.
using Foreign = QMap<QString, QByteArray>;

/// Writes members that have a value and leaves out those that do not. No object gets a name twice.
class Writer
{
public:
    template <typename Body>
    void object(Body body)
    {
        const QSet<QString> outer = std::exchange(m_names, {});
        m_writer.StartObject();
        body();
        m_writer.EndObject();
        m_names = outer;
    }
    template <typename Body>
    void array(Body body)
    {
        m_writer.StartArray();
        body();
        m_writer.EndArray();
    }
    void key(const char *name) { key(QString::fromLatin1(name)); }
    void text(const QString &text)
    {
        const QByteArray bytes = text.toUtf8();
        m_writer.String(bytes.constData(), static_cast<rapidjson::SizeType>(bytes.size()));
    }
    void number(double value) { m_writer.Double(value); }
    void null() { m_writer.Null(); }

    void key(const QString &name)
    {
        m_names.insert(name);
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
        if (!value && m_left.contains(QLatin1String(name)))
            return;
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
    template <typename Values, typename Write>
    void list(const char *name, const Values &values, Write write)
    {
        if (values.isEmpty() && m_left.contains(QLatin1String(name)))
            return;
        key(name);
        array([&] { std::for_each(values.begin(), values.end(), write); });
    }
    void list(const char *name, const QStringList &values)
    {
        list(name, values, [this](const QString &value) { text(value); });
    }
    void list(const QStringList &values)
    {
        array([&] {
            for (const QString &value : values)
                text(value);
        });
    }
    void foreign(const Foreign &members)
    {
        for (auto member = members.begin(); member != members.end(); ++member) {
            if (m_names.contains(member.key()))
                continue;
            key(member.key());
            m_writer.RawValue(member->constData(), static_cast<std::size_t>(member->size()), rapidjson::kObjectType);
        }
    }
    /// Leaves out lists without members, and what is false, where these members have the name.
    void leaveEmptyOnesTo(const Foreign &members) { m_left = members; }
    QByteArray result() const { return QByteArray(m_text.GetString(), static_cast<int>(m_text.GetSize())); }

private:
    rapidjson::StringBuffer m_text;
    rapidjson::Writer<rapidjson::StringBuffer> m_writer{m_text};
    QSet<QString> m_names; ///< Those that the object has.
    Foreign m_left;
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

void writeRecord(Writer &out, const AuxiliaryData &data)
{
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

void writeRecords(Writer &out, const Place &place)
{
    QList<AuxiliaryData> records;
    for (int i = 0; i < place.auxiliaryDataCount(); ++i) {
        if (const AuxiliaryData data = place.auxiliaryData(i); !vocabulary::isForeign(data.type()))
            records.append(data);
    }
    out.list(vocabulary::RECORDS, records, [&out](const AuxiliaryData &data) { writeRecord(out, data); });
}

/// Deepest nesting of a foreign member, which stands in the properties of a feature.
constexpr int MAX_FOREIGN_DEPTH = MAX_DEPTH - 2;

/// Writes what is not nested deeper than a reader takes.
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

/// A text that is JSON, or else the JSON of the text.
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

/// What an import could not take in and kept, to stand again where it was. A record may hold anything: what a reader
/// would take for the place's own is left out.
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
    const Foreign foreign = foreignOf(place, vocabulary::FOREIGN_PROPERTIES, isForeignProperty);
    out.leaveEmptyOnesTo(foreign);
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
    out.foreign(foreign);
}

template <typename Members>
QByteArray feature(const Place &place, Members members)
{
    Writer out;
    const int shown = shownLocation(place);
    out.object([&] {
        out.member("type", QStringLiteral("Feature"));
        if (place.locationCount() > 0)
            writeBox(out, place.location(shown).boundingBox());
        members(out);
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
    return feature(place,
                   [&](Writer &out) { out.foreign(foreignOf(place, vocabulary::FOREIGN_MEMBERS, isForeignMember)); });
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
