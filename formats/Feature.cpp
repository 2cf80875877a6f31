// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "Feature.h"

#include "Geometry.h"
#include "JsonValue.h"
#include "Vocabulary.h"

#include <places/Place.h>
#include <places/PointOfInterestAuxiliaryData.h>
#include <places/Tags.h>

#include <QtCore/QDateTime>

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <optional>
#include <vector>

namespace formats
{

using namespace vela::platform::places;
using rapidjson::SizeType;
using rapidjson::Value;

namespace
{

/// A number, or the number in a string.
std::optional<double> numberOf(const Value &value)
{
    return toNumber(scalarOf(value).value_or(QString()));
}

/// A number as an integer; std::nullopt when it is not whole or out of range.
template <typename Integer>
std::optional<Integer> integerOf(const Value &value)
{
    const std::optional<double> number = numberOf(value);
    if (!number || std::trunc(*number) != *number || *number < static_cast<double>(std::numeric_limits<Integer>::min())
        || *number >= std::ldexp(1.0, std::numeric_limits<Integer>::digits))
        return std::nullopt;
    return static_cast<Integer>(*number);
}

/// Seconds since 1970-01-01T00:00:00 UTC: as a number, or of a date and time in ISO 8601 that names its time zone.
std::optional<quint64> timeOf(const Value &value)
{
    const QDateTime time = QDateTime::fromString(scalarOf(value).value_or(QString()), Qt::ISODate);
    if (time.isValid() && time.timeSpec() != Qt::LocalTime && time.toSecsSinceEpoch() > 0)
        return static_cast<quint64>(time.toSecsSinceEpoch());
    return integerOf<quint64>(value);
}

std::optional<float> accuracyOf(const Value &value)
{
    const std::optional<double> metres = numberOf(value);
    return metres ? toAccuracy(*metres) : std::nullopt;
}

std::optional<bool> flagOf(const Value &value)
{
    const QString text = scalarOf(value).value_or(QString()).toLower();
    if (text == QLatin1String("true") || text == QLatin1String("false"))
        return text == QLatin1String("true");
    return std::nullopt;
}

template <typename Condition>
bool isListOf(const Value &value, Condition condition)
{
    return value.IsArray() && std::all_of(value.Begin(), value.End(), condition);
}

/// The strings and numbers of an array, as texts.
std::optional<QStringList> textsOf(const Value &value)
{
    if (!isListOf(value, [](const Value &element) { return element.IsString() || element.IsNumber(); }))
        return std::nullopt;
    QStringList texts;
    for (const Value &element : value.GetArray())
        texts.append(*scalarOf(element));
    return texts;
}

/// Applies `readValue` to the member with this name; std::nullopt when there is none.
template <typename Type>
std::optional<Type> read(const Value &object, const char *name, std::optional<Type> (*readValue)(const Value &))
{
    const Value *value = memberOf(object, name);
    return value ? readValue(*value) : std::nullopt;
}

/// The objects of an array that contains only objects.
std::vector<const Value *> objectsMember(const Value &object, const char *name)
{
    std::vector<const Value *> objects;
    if (const Value *list = memberOf(object, name); list && isListOf(*list, std::mem_fn(&Value::IsObject))) {
        for (const Value &element : list->GetArray())
            objects.push_back(&element);
    }
    return objects;
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

/// A GeoJSON position: longitude, latitude, optional altitude.
Coordinates readPosition(const Value *numbers)
{
    if (!areNumbers(numbers, 2))
        return {};
    Coordinates position((*numbers)[1].GetDouble(), (*numbers)[0].GetDouble());
    if (numbers->Size() > 2)
        position.setAltitude((*numbers)[2].GetDouble());
    return position;
}

/// A GeoJSON bounding box: south-west corner, then north-east corner. Either both have an altitude or neither.
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
        (address.*part.set)(read(members, part.name, textsOf).value_or(QStringList()));
    if (const auto floor = read(members, vocabulary::FLOOR, integerOf<int>))
        address.setFloor(*floor);
    return address;
}

/// @param coordinates without accuracies.
Location readLocation(const Value &members, Coordinates coordinates, const Value *box)
{
    if (const auto metres = read(members, vocabulary::HORIZONTAL_ACCURACY, accuracyOf))
        coordinates.setHorizontalAccuracy(*metres);
    if (const auto metres = read(members, vocabulary::VERTICAL_ACCURACY, accuracyOf))
        coordinates.setVerticalAccuracy(*metres);
    Location location;
    if (coordinates.isValid())
        location.setCoordinates(coordinates);
    location.setAddress(readAddress(members));
    location.setBoundingBox(readBox(box));
    location.setVirtualData(textMember(members, vocabulary::VIRTUAL_DATA));
    if (const auto type = read(members, vocabulary::VIRTUAL_DATA_TYPE, integerOf<int>))
        location.setVirtualDataType(static_cast<VirtualLocationType::Type>(*type));
    return location;
}

/// Adds all locations in order. `shown` is the location of the feature's geometry.
QString addLocations(const Location &shown, const Value &properties, Place &place)
{
    QList<Location> locations;
    for (const Value *other : objectsMember(properties, vocabulary::OTHER_LOCATIONS))
        locations.append(readLocation(*other, readPosition(memberOf(*other, "coordinates")), memberOf(*other, "bbox")));
    const int index = read(properties, vocabulary::LOCATION_INDEX, integerOf<int>).value_or(0);
    locations.insert(qBound(0, index, locations.size()), shown);
    for (const Location &location : qAsConst(locations)) {
        if (!locates(location))
            return QStringLiteral("a location without a position, an address or virtual data");
        place.addLocation(location);
    }
    return {};
}

// --------------------------------------------------------------------------------------------------------- records

void addRecords(const Value &properties, Place &place)
{
    for (const Value *record : objectsMember(properties, vocabulary::RECORDS)) {
        AuxiliaryData data(textMember(*record, "type"));
        data.setExternalId(textMember(*record, "externalId"));
        if (const Value *values = memberOf(*record, "properties"); values && values->IsObject()) {
            for (const auto &value : values->GetObject())
                data.addProperty(textOf(value.name), scalarOf(value.value).value_or(QString()));
        }
        place.addAuxiliaryData(data);
    }
}

/// Sets the contact details that differ from the records. Users edit these properties, so they take precedence.
void setContactDetails(const Value &properties, Place &place)
{
    const QString phone = textMember(properties, vocabulary::PHONE);
    if (!phone.isEmpty() && phone != place.primaryPhoneNumber())
        changePointOfInterest(place, [&](auto &poi) { poi.setPhoneNumber(phone); });
    const QString email = textMember(properties, vocabulary::EMAIL);
    if (!email.isEmpty() && email != place.primaryEmailAddress())
        changePointOfInterest(place, [&](auto &poi) { poi.setEmailAddress(email); });
    const QString url = textMember(properties, vocabulary::URL);
    if (QUrl(url).isValid() && url != place.primaryUrl().toString(QUrl::FullyEncoded))
        changePointOfInterest(place, [&](auto &poi) { poi.setUrl(QUrl(url)); });
}

// ------------------------------------------------------------------------------------------------ foreign features

bool isOfKind(const Value &value, vocabulary::Kind kind)
{
    using vocabulary::Kind;
    switch (kind) {
    case Kind::Text:
        return scalarOf(value).has_value();
    case Kind::Url:
        return scalarOf(value) == QString() || QUrl(scalarOf(value).value_or(QString())).isValid();
    case Kind::Whole:
        return integerOf<int>(value).has_value();
    case Kind::Metres:
        return accuracyOf(value).has_value();
    case Kind::Time:
        return timeOf(value).has_value();
    case Kind::Flag:
        return flagOf(value).has_value();
    case Kind::Texts:
        return textsOf(value).has_value();
    case Kind::Objects:
        return isListOf(value, std::mem_fn(&Value::IsObject));
    case Kind::Unread:
        break;
    }
    return true;
}

/// Keeps the members that a place cannot hold in an auxiliary record, as JSON texts.
void keepForeign(const Value &object, bool (*isForeign)(const QString &, const Value &), const char *type, Place &place)
{
    AuxiliaryData data{QString::fromLatin1(type)};
    for (const auto &member : object.GetObject()) {
        if (const QString name = textOf(member.name); isForeign(name, member.value))
            data.addProperty(name, jsonText(member.value));
    }
    if (!data.properties().isEmpty())
        place.addAuxiliaryData(data);
}

/// Maps properties of other programs to the properties of this format. Skips a feature that has a list of tags.
void interpret(const Value &feature, const Value &properties, Place &place, Location &location)
{
    if (read(properties, vocabulary::TAGS, textsOf))
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

/// True when a list or object that becomes part of the place has more than MAX_LIST_LENGTH members.
bool isTooLong(const Value &feature, const Value &properties)
{
    constexpr SizeType MOST = MAX_LIST_LENGTH;
    if (feature.MemberCount() > MOST || properties.MemberCount() > MOST)
        return true;
    for (const auto &property : properties.GetObject()) {
        if (property.value.IsArray() && property.value.Size() > MOST
            && !isForeignProperty(textOf(property.name), property.value))
            return true;
    }
    for (const Value *record : objectsMember(properties, vocabulary::RECORDS)) {
        if (const Value *values = memberOf(*record, "properties");
            values && values->IsObject() && values->MemberCount() > MOST)
            return true;
    }
    return false;
}

void addTexts(const Value &properties, Place &place)
{
    const QString name = textMember(properties, vocabulary::NAME);
    place.setName(name.trimmed().isEmpty() ? QLatin1String(vocabulary::UNNAMED) : name);
    place.setDescription(textMember(properties, vocabulary::DESCRIPTION));
    place.setSource(textMember(properties, vocabulary::SOURCE));
    const QStringList tags = read(properties, vocabulary::TAGS, textsOf).value_or(QStringList());
    for (const QString &tag : tags)
        place.addTag(tag);
    if (read(properties, vocabulary::FAVORITE, flagOf).value_or(false))
        place.addTag(Tags::Favorite);
    // Some tags add an alias. A list of aliases in the file replaces these.
    const std::optional<QStringList> aliases = read(properties, vocabulary::ALIASES, textsOf);
    if (!aliases)
        return;
    const QStringList ownAliases = place.aliases();
    for (const QString &alias : ownAliases)
        place.removeAlias(alias);
    for (const QString &alias : *aliases)
        place.addAlias(alias);
}

/// Fills a place from a feature that is not a line or area. Returns why it cannot; empty on success.
QString fillPlace(const Value &feature, const Value &properties, const Geometry &geometry, Place &place)
{
    Location location = readLocation(properties, geometry.point, memberOf(feature, "bbox"));
    if (!location.boundingBox().isValid())
        location.setBoundingBox(geometry.box);
    if (!locates(location))
        return QStringLiteral("it has neither a position nor an address");
    addTexts(properties, place);
    place.setPrivate(read(properties, vocabulary::PRIVATE, flagOf).value_or(false));
    place.setExpiredTime(read(properties, vocabulary::EXPIRY_TIME, timeOf).value_or(0));
    addRecords(properties, place);
    interpret(feature, properties, place, location);
    setContactDetails(properties, place);
    keepForeign(properties, isForeignProperty, vocabulary::FOREIGN_PROPERTIES, place);
    keepForeign(feature, isForeignMember, vocabulary::FOREIGN_MEMBERS, place);
    return addLocations(location, properties, place);
}

/// Fills `place`, and all of `result` except its place. False when the feature is not a place.
bool fillResult(const Value &feature, const ReadOptions &options, Place &place, ReadPlace &result)
{
    static const Value NO_PROPERTIES(rapidjson::kObjectType);
    const Value *given = memberOf(feature, "properties");
    const Value &properties = given && given->IsObject() ? *given : NO_PROPERTIES;
    const QString type = textMember(feature, "type");
    if (type != QLatin1String("Feature"))
        result.problem = type.isEmpty() ? QStringLiteral("not a feature")
                                        : QStringLiteral("not a feature: its type is %1").arg(quoted(type));
    else if (isTooLong(feature, properties))
        result.problem = QStringLiteral("a list of more than %1 members").arg(MAX_LIST_LENGTH);
    if (!result.problem.isEmpty())
        return false;
    const Value *shape = memberOf(feature, "geometry");
    const Geometry geometry = shape ? readGeometry(*shape, options.areas) : Geometry();
    result.id = textMember(feature, "id");
    result.kind = geometry.kind;
    result.problem = geometry.problem;
    result.losses += geometry.losses;
    if (result.kind == MemberKind::Place && result.problem.isEmpty()) {
        result.problem = fillPlace(feature, properties, geometry, place);
        return result.problem.isEmpty();
    }
    return false;
}

} // namespace

std::optional<float> toAccuracy(double metres)
{
    const bool isAccuracy = metres >= 0 && metres <= static_cast<double>(std::numeric_limits<float>::max());
    return isAccuracy ? std::optional(static_cast<float>(metres)) : std::nullopt;
}

bool locates(const Location &location)
{
    return location.coordinates().isValid() || !location.address().isEmpty() || !location.virtualData().isEmpty();
}

bool isForeignProperty(const QString &name, const Value &value)
{
    const auto known = vocabulary::kinds().find(name);
    return known == vocabulary::kinds().end() || (!value.IsNull() && !isOfKind(value, *known));
}

bool isForeignMember(const QString &name, const Value &value)
{
    if (name == QLatin1String("bbox"))
        return !value.IsNull() && !readBox(&value).isValid();
    return name != QLatin1String("type") && name != QLatin1String("geometry") && name != QLatin1String("properties");
}

void changePointOfInterest(Place &place, const std::function<void(PointOfInterestAuxiliaryData &)> &change)
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

void readFeature(const Value &feature, const ReadOptions &options, ReadPlace &result)
{
    auto place = std::make_unique<Place>();
    if (fillResult(feature, options, *place, result))
        result.place = std::move(place);
}

QString readFeature(const Value &feature, Place &place)
{
    ReadPlace result;
    const bool isPlace = fillResult(feature, {}, place, result);
    return isPlace || !result.problem.isEmpty() ? result.problem : QStringLiteral("its geometry is a line or an area");
}

} // namespace formats
