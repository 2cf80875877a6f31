// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "GeoJsonWriter.h"

#include <places/Place.h>
#include <places/PlaceHeader.h>

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <cmath>

namespace tool
{

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

    void member(const QString &name, const QString &value)
    {
        if (value.isEmpty())
            return;
        const QByteArray bytes = name.toUtf8();
        m_writer.Key(bytes.constData(), static_cast<rapidjson::SizeType>(bytes.size()));
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
    void member(const char *name, const QStringList &values)
    {
        if (values.isEmpty())
            return;
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
    QByteArray result() const { return QByteArray(m_text.GetString(), static_cast<int>(m_text.GetSize())); }

private:
    rapidjson::StringBuffer m_text;
    rapidjson::Writer<rapidjson::StringBuffer> m_writer{m_text};
};

/// Longitude first, altitude third.
void writeGeometry(Writer &out, const Coordinates &position)
{
    out.key("geometry");
    if (!position.isValid())
        return out.null();
    out.object([&] {
        out.member("type", QStringLiteral("Point"));
        out.key("coordinates");
        out.array([&] {
            out.number(position.longitude());
            out.number(position.latitude());
            if (std::isfinite(position.altitude()))
                out.number(position.altitude());
        });
    });
}

void writeAddress(Writer &out, const Address &address)
{
    out.member("label", address.label());
    out.member("houseNumber", address.houseNumber());
    out.member("street", address.street());
    out.member("city", address.city());
    out.member("region", address.region());
    out.member("country", address.country());
    out.member("countryCode", address.isoAlpha2CountryCode());
    out.member("countryCode3", address.countryCode());
    out.member("postalCode", address.postalCode());
}

void writeCommonProperties(Writer &out, const AbstractPlace &place)
{
    out.member("name", place.name());
    out.member("description", place.description());
    writeAddress(out, place.primaryAddress());
    out.member("phone", place.primaryPhoneNumber());
    out.member("email", place.primaryEmailAddress());
    out.member("url", place.primaryUrl().toString());
    out.member("favorite", place.isFavorite());
    out.member("owner", place.owner());
    out.member("lastUsedTime", static_cast<qint64>(place.lastUsedTime()));
}

void writeFullProperties(Writer &out, const Place &place)
{
    QStringList tags;
    for (int i = 0; i < place.tagCount(); ++i)
        tags.append(place.tag(i));
    out.member("tags", tags);
    out.member("aliases", place.aliases());
    out.member("usageCount", qint64(place.usageCount()));
    out.member("creationTime", static_cast<qint64>(place.creationTime()));
    out.member("updateTime", static_cast<qint64>(place.updateTime()));
    out.key("records");
    out.array([&] {
        for (int i = 0; i < place.auxiliaryDataCount(); ++i) {
            const AuxiliaryData data = place.auxiliaryData(i);
            const QMap<QString, QString> properties = data.properties();
            out.object([&] {
                out.member("type", data.type());
                out.member("externalId", data.externalId());
                for (auto property = properties.begin(); property != properties.end(); ++property)
                    out.member(property.key(), property.value());
            });
        }
    });
}

template <typename Properties>
void writeFeature(Writer &out, const AbstractPlace &place, Properties properties)
{
    out.object([&] {
        out.member("type", QStringLiteral("Feature"));
        out.member("id", place.id());
        writeGeometry(out, place.primaryCoordinates());
        out.key("properties");
        out.object(properties);
    });
}

} // namespace

QByteArray toGeoJson(const Place &place)
{
    Writer out;
    writeFeature(out, place, [&] {
        writeCommonProperties(out, place);
        writeFullProperties(out, place);
    });
    return out.result();
}

QByteArray toGeoJson(const QList<PlaceHeader *> &places)
{
    Writer out;
    out.object([&] {
        out.member("type", QStringLiteral("FeatureCollection"));
        out.key("features");
        out.array([&] {
            for (const PlaceHeader *place : places)
                writeFeature(out, *place, [&] { writeCommonProperties(out, *place); });
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
