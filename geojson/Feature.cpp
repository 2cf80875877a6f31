// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "Feature.h"

#include "Vocabulary.h"

#include <places/Place.h>
#include <places/PointOfInterestAuxiliaryData.h>
#include <places/Tags.h>

#include <QtCore/QSet>

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

namespace geojson
{

using namespace vela::platform::places;
using rapidjson::SizeType;
using rapidjson::Value;

namespace
{

QString textOf(const Value &value)
{
    return QString::fromUtf8(value.GetString(), static_cast<int>(value.GetStringLength()));
}

/// The member of this name, the last one where there are several; null when there is none.
const Value *memberOf(const Value &object, const char *name)
{
    if (!object.IsObject())
        return nullptr;
    for (auto member = object.MemberEnd(); member != object.MemberBegin();) {
        if ((--member)->name == name)
            return &member->value;
    }
    return nullptr;
}

/// A string, number or bool as a text; empty for anything else.
QString scalarText(const Value &value)
{
    if (value.IsString())
        return textOf(value);
    if (value.IsInt64())
        return QString::number(value.GetInt64());
    if (value.IsNumber())
        return QString::number(value.GetDouble(), 'g', 17);
    if (value.IsBool())
        return value.GetBool() ? QStringLiteral("true") : QStringLiteral("false");
    return {};
}

QString textMember(const Value &object, const char *name)
{
    const Value *value = memberOf(object, name);
    return value ? scalarText(*value) : QString();
}

/// A number, or a text that is one.
std::optional<double> numberMember(const Value &object, const char *name)
{
    const Value *value = memberOf(object, name);
    if (!value || value->IsBool())
        return std::nullopt;
    bool isNumber = false;
    const double number = scalarText(*value).toDouble(&isNumber);
    return isNumber && std::isfinite(number) ? std::optional(number) : std::nullopt;
}

/// A number as a whole one; nothing when it is none, or beyond the limits of the type.
template <typename Integer>
std::optional<Integer> integerMember(const Value &object, const char *name)
{
    const std::optional<double> number = numberMember(object, name);
    if (!number || std::trunc(*number) != *number || *number < static_cast<double>(std::numeric_limits<Integer>::min())
        || *number >= std::ldexp(1.0, std::numeric_limits<Integer>::digits))
        return std::nullopt;
    return static_cast<Integer>(*number);
}

bool boolMember(const Value &object, const char *name)
{
    return textMember(object, name) == QLatin1String("true");
}

/// The members of an array that are scalars, as texts.
QStringList textsMember(const Value &object, const char *name)
{
    QStringList texts;
    if (const Value *list = memberOf(object, name); list && list->IsArray()) {
        for (const Value &element : list->GetArray()) {
            if (element.IsString() || element.IsNumber())
                texts.append(scalarText(element));
        }
    }
    return texts;
}

QString jsonText(const Value &value)
{
    rapidjson::StringBuffer text;
    rapidjson::Writer<rapidjson::StringBuffer> writer(text);
    value.Accept(writer);
    return QString::fromUtf8(text.GetString(), static_cast<int>(text.GetSize()));
}

// ------------------------------------------------------------------------------------------------------- locations

bool areNumbers(const Value *list, SizeType atLeast)
{
    return list && list->IsArray() && list->Size() >= atLeast
           && std::all_of(list->Begin(), list->End(), [](const Value &number) { return number.IsNumber(); });
}

/// A GeoJSON position: longitude, latitude and, if it is known, altitude.
Coordinates readPosition(const Value *numbers)
{
    if (!areNumbers(numbers, 2))
        return {};
    Coordinates position((*numbers)[1].GetDouble(), (*numbers)[0].GetDouble());
    if (numbers->Size() > 2)
        position.setAltitude((*numbers)[2].GetDouble());
    return position;
}

/// A GeoJSON bounding box: the south-west corner and the north-east one, both with or both without altitude.
BoundingBox readBox(const Value *numbers)
{
    BoundingBox box;
    if (!areNumbers(numbers, 4) || (numbers->Size() != 4 && numbers->Size() != 6))
        return box;
    const SizeType dimensions = numbers->Size() / 2;
    const auto number = [numbers](SizeType i) { return (*numbers)[i].GetDouble(); };
    Coordinates topLeft(number(dimensions + 1), number(0));
    Coordinates bottomRight(number(1), number(dimensions));
    if (dimensions == 3) {
        topLeft.setAltitude(number(5));
        bottomRight.setAltitude(number(2));
    }
    box.setTopLeft(topLeft);
    box.setBottomRight(bottomRight);
    return box.isValid() ? box : BoundingBox();
}

Address readAddress(const Value &members)
{
    Address address;
    for (const auto &part : vocabulary::ADDRESS_TEXTS)
        (address.*part.set)(textMember(members, part.name));
    for (const auto &part : vocabulary::ADDRESS_LINES)
        (address.*part.set)(textsMember(members, part.name));
    if (const auto floor = integerMember<int>(members, vocabulary::FLOOR))
        address.setFloor(*floor);
    return address;
}

Location readLocation(const Value &members, const Value *position, const Value *box)
{
    Coordinates coordinates = readPosition(position);
    if (const auto metres = numberMember(members, vocabulary::HORIZONTAL_ACCURACY))
        coordinates.setHorizontalAccuracy(static_cast<float>(*metres));
    if (const auto metres = numberMember(members, vocabulary::VERTICAL_ACCURACY))
        coordinates.setVerticalAccuracy(static_cast<float>(*metres));
    Location location;
    if (coordinates.isValid())
        location.setCoordinates(coordinates);
    location.setAddress(readAddress(members));
    location.setBoundingBox(readBox(box));
    location.setVirtualData(textMember(members, vocabulary::VIRTUAL_DATA));
    if (const auto type = integerMember<int>(members, vocabulary::VIRTUAL_DATA_TYPE))
        location.setVirtualDataType(static_cast<VirtualLocationType::Type>(*type));
    return location;
}

/// True when a location tells where something is. A place cannot be stored with one that does not.
bool locates(const Location &location)
{
    return location.coordinates().isValid() || !location.address().isEmpty() || !location.virtualData().isEmpty();
}

/// Adds the other locations and, in its place among them, the one that the feature's geometry shows.
QString addLocations(const Location &shown, const Value &properties, Place &place)
{
    QList<Location> locations;
    if (const Value *others = memberOf(properties, vocabulary::OTHER_LOCATIONS); others && others->IsArray()) {
        for (const Value &other : others->GetArray())
            locations.append(readLocation(other, memberOf(other, "coordinates"), memberOf(other, "bbox")));
    }
    const int index = integerMember<int>(properties, vocabulary::LOCATION_INDEX).value_or(0);
    locations.insert(qBound(0, index, locations.size()), shown);
    for (const Location &location : qAsConst(locations)) {
        if (!locates(location))
            return QStringLiteral("a location that is nowhere");
        place.addLocation(location);
    }
    return {};
}

// --------------------------------------------------------------------------------------------------------- records

void addRecords(const Value &properties, Place &place)
{
    const Value *records = memberOf(properties, vocabulary::RECORDS);
    if (!records || !records->IsArray())
        return;
    for (const Value &record : records->GetArray()) {
        AuxiliaryData data(textMember(record, "type"));
        data.setExternalId(textMember(record, "externalId"));
        if (const Value *values = memberOf(record, "properties"); values && values->IsObject()) {
            for (const auto &value : values->GetObject())
                data.addProperty(textOf(value.name), scalarText(value.value));
        }
        if (!data.type().isEmpty())
            place.addAuxiliaryData(data);
    }
}

/// The place's record of points of interest, a new one if it has none, after `change`.
template <typename Change>
void changePointOfInterest(Place &place, Change change)
{
    int index = 0;
    while (index < place.auxiliaryDataCount()
           && place.auxiliaryData(index).type() != AuxiliaryData::TypePointOfInterest)
        ++index;
    if (index == place.auxiliaryDataCount())
        place.addAuxiliaryData(PointOfInterestAuxiliaryData());
    PointOfInterestAuxiliaryData poi(place.auxiliaryData(index));
    change(poi);
    place.replaceAuxiliaryData(index, poi);
}

/// Sets what the records do not say already: whoever edits an exported file edits these.
void setContactDetails(const Value &properties, Place &place)
{
    const QString phone = textMember(properties, vocabulary::PHONE);
    if (!phone.isEmpty() && phone != place.primaryPhoneNumber())
        changePointOfInterest(place, [&](auto &poi) { poi.setPhoneNumber(phone); });
    const QString email = textMember(properties, vocabulary::EMAIL);
    if (!email.isEmpty() && email != place.primaryEmailAddress())
        changePointOfInterest(place, [&](auto &poi) { poi.setEmailAddress(email); });
    const QString url = textMember(properties, vocabulary::URL);
    if (!url.isEmpty() && url != place.primaryUrl().toString(QUrl::FullyEncoded))
        changePointOfInterest(place, [&](auto &poi) { poi.setUrl(QUrl(url)); });
}

// ------------------------------------------------------------------------------------------------ foreign features

/// True for a property that the vocabulary knows.
bool isKnown(const QString &name)
{
    static const QSet<QString> known = [] {
        QSet<QString> names;
        for (const char *each : vocabulary::NAMES)
            names.insert(QLatin1String(each));
        for (const auto &part : vocabulary::ADDRESS_TEXTS)
            names.insert(QLatin1String(part.name));
        for (const auto &part : vocabulary::ADDRESS_LINES)
            names.insert(QLatin1String(part.name));
        return names;
    }();
    return known.contains(name);
}

/// True for a member of a feature that a place has members for.
bool isOfGeoJson(const QString &name)
{
    return name == QLatin1String("type") || name == QLatin1String("geometry") || name == QLatin1String("properties")
           || name == QLatin1String("bbox");
}

/// Keeps members that a place has nothing for, as JSON texts, in a record of its own.
void keepForeign(const Value &object, bool (*isOwn)(const QString &), const char *type, Place &place)
{
    AuxiliaryData data{QString::fromLatin1(type)};
    for (const auto &member : object.GetObject()) {
        if (const QString name = textOf(member.name); !isOwn(name))
            data.addProperty(name, jsonText(member.value));
    }
    if (!data.properties().isEmpty())
        place.addAuxiliaryData(data);
}

/// Makes of other makers' properties what they mean here. A feature with a list of tags speaks for itself.
void interpret(const Value &feature, const Value &properties, Place &place, Location &location)
{
    if (memberOf(properties, vocabulary::TAGS))
        return;
    const QString kind = textMember(properties, "kind");
    const QString id = textMember(feature, "id");
    if (!kind.isEmpty())
        place.addTag(kind);
    if (kind.endsWith(QLatin1String("airport")))
        place.addTag(Tags::Airport);
    for (const char *code : {"iata", "icao"}) {
        if (const QString alias = textMember(properties, code); !alias.isEmpty())
            place.addAlias(alias);
    }
    Address address = location.address();
    if (kind == QLatin1String("city") && address.city().isEmpty())
        address.setCity(place.name());
    location.setAddress(address);
    if (!kind.isEmpty() || !id.isEmpty()) {
        changePointOfInterest(place, [&](auto &poi) {
            poi.setExternalId(id);
            if (!kind.isEmpty())
                poi.setCategory(kind);
        });
    }
}

/// The point of a feature; null when there is no geometry at all. False when its geometry is something else.
bool findPosition(const Value &feature, const Value *&position)
{
    const Value *geometry = memberOf(feature, "geometry");
    if (!geometry || geometry->IsNull())
        return true;
    if (textMember(*geometry, "type") != QLatin1String("Point"))
        return false;
    position = memberOf(*geometry, "coordinates");
    return readPosition(position).isValid();
}

} // namespace

QString readFeature(const Value &feature, Place &place)
{
    if (textMember(feature, "type") != QLatin1String("Feature"))
        return QStringLiteral("not a feature");
    static const Value NO_PROPERTIES(rapidjson::kObjectType);
    const Value *given = memberOf(feature, "properties");
    const Value &properties = given && given->IsObject() ? *given : NO_PROPERTIES;
    const Value *position = nullptr;
    if (!findPosition(feature, position))
        return QStringLiteral("no point on the Earth");
    Location location = readLocation(properties, position, memberOf(feature, "bbox"));
    if (!locates(location))
        return QStringLiteral("no point on the Earth");
    const Value *name = memberOf(properties, vocabulary::NAME);
    if (!name || !name->IsString() || name->GetStringLength() == 0)
        return QStringLiteral("no name");

    place.setName(textOf(*name));
    place.setDescription(textMember(properties, vocabulary::DESCRIPTION));
    place.setSource(textMember(properties, vocabulary::SOURCE));
    place.setPrivate(boolMember(properties, vocabulary::PRIVATE));
    place.setExpiredTime(integerMember<quint64>(properties, vocabulary::EXPIRY_TIME).value_or(0));
    for (const QString &tag : textsMember(properties, vocabulary::TAGS))
        place.addTag(tag);
    if (boolMember(properties, vocabulary::FAVORITE))
        place.addTag(Tags::Favorite);
    // Some tags bring an alias along; the list of aliases, if there is one, knows better.
    if (memberOf(properties, vocabulary::ALIASES)) {
        for (const QString &alias : place.aliases())
            place.removeAlias(alias);
    }
    for (const QString &alias : textsMember(properties, vocabulary::ALIASES))
        place.addAlias(alias);
    addRecords(properties, place);
    interpret(feature, properties, place, location);
    setContactDetails(properties, place);
    keepForeign(properties, isKnown, vocabulary::FOREIGN_PROPERTIES, place);
    keepForeign(feature, isOfGeoJson, vocabulary::FOREIGN_MEMBERS, place);
    return addLocations(location, properties, place);
}

// ----------------------------------------------------------------------------------------------------- TextFeature

TextFeature::TextFeature()
{
    auto &allocator = m_feature.GetAllocator();
    m_feature.AddMember("type", "Feature", allocator);
    m_feature.AddMember("properties", Value(rapidjson::kObjectType), allocator);
}

void TextFeature::setPosition(const QString &longitude, const QString &latitude, const QString &altitude)
{
    if (longitude.isEmpty() && latitude.isEmpty())
        return;
    auto &allocator = m_feature.GetAllocator();
    Value coordinates(rapidjson::kArrayType);
    const auto append = [&](const QString &text) {
        bool isNumber = false;
        const double number = text.toDouble(&isNumber);
        coordinates.PushBack(isNumber && std::isfinite(number) ? Value(number) : Value(), allocator);
    };
    append(longitude);
    append(latitude);
    if (!altitude.isEmpty())
        append(altitude);
    Value geometry(rapidjson::kObjectType);
    geometry.AddMember("type", "Point", allocator);
    geometry.AddMember("coordinates", coordinates, allocator);
    m_feature.AddMember("geometry", geometry, allocator);
}

void TextFeature::set(const QString &name, const QString &value)
{
    if (!value.isEmpty())
        add(name, toValue(value));
}

void TextFeature::set(const QString &name, const QStringList &values)
{
    if (values.isEmpty())
        return;
    Value list(rapidjson::kArrayType);
    for (const QString &value : values)
        list.PushBack(toValue(value), m_feature.GetAllocator());
    add(name, std::move(list));
}

QString TextFeature::read(Place &place) const
{
    return readFeature(m_feature, place);
}

Value TextFeature::toValue(const QString &text)
{
    const QByteArray bytes = text.toUtf8();
    return Value(bytes.constData(), static_cast<SizeType>(bytes.size()), m_feature.GetAllocator());
}

void TextFeature::add(const QString &name, Value value)
{
    m_feature["properties"].AddMember(toValue(name), value, m_feature.GetAllocator());
}

} // namespace geojson
