// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "OtherMakers.h"

#include "JsonValue.h"
#include "Vocabulary.h"

#include <cmath>
#include <string>

namespace formats
{

using rapidjson::SizeType;
using rapidjson::Value;

namespace
{

/// Source of a property in the properties of a maker. The first source with a value is used.
struct Source
{
    const char *object; ///< The property whose object has the member; null for the properties themselves.
    const char *member;
    const char *property; ///< Name in the vocabulary.
};

/// Properties of a maker.
struct Maker
{
    const char *mark; ///< A property that only this maker's features have.
    const Source *begin;
    const Source *end;
    bool usesOrigin; ///< The maker writes 0, 0 for an unknown position.
};

/// Saved places of Google Takeout until about 2022.
constexpr Source TAKEOUT_BEFORE[] = {
    {nullptr, "Title", vocabulary::NAME},
    {"Location", "Business Name", vocabulary::NAME},
    {"Location", "Address", "label"},
    {"Location", "Country Code", "countryCode"},
    {nullptr, "Google Maps URL", vocabulary::URL},
    {nullptr, "Comment", vocabulary::DESCRIPTION},
};

/// Saved places of Google Takeout.
constexpr Source TAKEOUT[] = {
    {"location", "name", vocabulary::NAME},        {"location", "address", "label"},
    {"location", "country_code", "countryCode"},   {nullptr, "google_maps_url", vocabulary::URL},
    {nullptr, "Comment", vocabulary::DESCRIPTION},
};

/// OpenStreetMap: JSON of the Overpass API, and GeoJSON made from it.
constexpr Source OPEN_STREET_MAP[] = {
    {nullptr, "addr:housenumber", "houseNumber"},
    {nullptr, "addr:street", "street"},
    {nullptr, "addr:city", "city"},
    {nullptr, "addr:state", "region"},
    {nullptr, "addr:postcode", "postalCode"},
    {nullptr, "addr:country", "countryCode"},
    {nullptr, "contact:phone", vocabulary::PHONE},
    {nullptr, "contact:email", vocabulary::EMAIL},
    {nullptr, "website", vocabulary::URL},
    {nullptr, "contact:website", vocabulary::URL},
    {nullptr, "amenity", "kind"},
    {nullptr, "shop", "kind"},
    {nullptr, "tourism", "kind"},
    {nullptr, "leisure", "kind"},
};

constexpr Maker MAP_DATA{"@id", std::begin(OPEN_STREET_MAP), std::end(OPEN_STREET_MAP), false};

constexpr Maker MAKERS[] = {
    {"Google Maps URL", std::begin(TAKEOUT_BEFORE), std::end(TAKEOUT_BEFORE), true},
    {"google_maps_url", std::begin(TAKEOUT), std::end(TAKEOUT), true},
    MAP_DATA,
};

void addFrom(const Maker &maker, Value &properties, rapidjson::Document::AllocatorType &allocator)
{
    for (const Source *source = maker.begin; source != maker.end; ++source) {
        const Value *object = source->object ? memberOf(properties, source->object) : &properties;
        const Value *value = object ? memberOf(*object, source->member) : nullptr;
        if (value && value->IsString() && value->GetStringLength() > 0 && !memberOf(properties, source->property))
            properties.AddMember(Value(source->property, allocator), Value(*value, allocator), allocator);
    }
}

void dropOrigin(Value &feature)
{
    const Value *geometry = memberOf(feature, "geometry");
    const Value *numbers = geometry ? memberOf(*geometry, "coordinates") : nullptr;
    if (numbers && numbers->IsArray() && numbers->Size() >= 2 && (*numbers)[0] == 0 && (*numbers)[1] == 0)
        feature.RemoveMember("geometry");
}

/// The position of an object with "lat" and "lon".
Value positionOf(const Value &object, rapidjson::Document::AllocatorType &allocator)
{
    Value position(rapidjson::kArrayType);
    for (const char *name : {"lon", "lat"}) {
        const Value *number = memberOf(object, name);
        position.PushBack(number ? Value(*number, allocator) : Value(), allocator);
    }
    return position;
}

bool isClosed(const Value &list)
{
    return list.IsArray() && list.Size() > 3 && list[0] == list[list.Size() - 1];
}

Value shape(const char *type, Value &&coordinates, rapidjson::Document::AllocatorType &allocator)
{
    Value geometry(rapidjson::kObjectType);
    geometry.AddMember("type", Value(type, allocator), allocator);
    geometry.AddMember("coordinates", coordinates, allocator);
    return geometry;
}

/// The corners of a way, or of an element's bounds.
Value cornersOf(const Value &element, rapidjson::Document::AllocatorType &allocator)
{
    Value corners(rapidjson::kArrayType);
    const Value *points = memberOf(element, "geometry");
    const Value *bounds = memberOf(element, "bounds");
    if (points && points->IsArray()) {
        for (const Value &point : points->GetArray())
            corners.PushBack(positionOf(point, allocator), allocator);
    } else if (bounds) {
        constexpr const char *CORNERS[][2] = {
            {"minlon", "minlat"}, {"maxlon", "minlat"}, {"maxlon", "maxlat"}, {"minlon", "maxlat"}};
        for (const auto &[longitude, latitude] : CORNERS) {
            Value corner(rapidjson::kArrayType);
            for (const char *name : {longitude, latitude}) {
                const Value *number = memberOf(*bounds, name);
                corner.PushBack(number ? Value(*number, allocator) : Value(), allocator);
            }
            corners.PushBack(corner, allocator);
        }
    }
    // Without corners there would be no geometry.
    if (corners.Empty())
        corners.PushBack(Value(), allocator);
    return corners;
}

Value geometryOf(const Value &element, const std::string &type, rapidjson::Document::AllocatorType &allocator)
{
    const Value *centre = memberOf(element, "center");
    if (centre || type == "node")
        return shape("Point", positionOf(centre ? *centre : element, allocator), allocator);
    const Value *points = memberOf(element, "geometry");
    const Value *nodes = memberOf(element, "nodes");
    const bool isLine = type == "way" && !(points && isClosed(*points)) && !(nodes && isClosed(*nodes));
    Value corners = cornersOf(element, allocator);
    if (isLine)
        return shape("LineString", std::move(corners), allocator);
    Value rings(rapidjson::kArrayType);
    rings.PushBack(corners, allocator);
    return shape("Polygon", std::move(rings), allocator);
}

} // namespace

bool toFeature(rapidjson::Document &element)
{
    auto &allocator = element.GetAllocator();
    const std::string type = textMember(element, "type").toStdString();
    const Value *tags = memberOf(element, "tags");
    const bool hasTags = tags && tags->IsObject() && !tags->ObjectEmpty();
    if (type == "node" && !hasTags)
        return false;
    if (type != "node" && type != "way" && type != "relation")
        return true;
    Value properties(rapidjson::kObjectType);
    if (hasTags)
        properties.CopyFrom(*tags, allocator);
    const std::string id = type + '/' + textMember(element, "id").toStdString();
    addFrom(MAP_DATA, properties, allocator);
    Value feature(rapidjson::kObjectType);
    feature.AddMember("type", "Feature", allocator);
    feature.AddMember("id", Value(id.c_str(), allocator), allocator);
    feature.AddMember("geometry", geometryOf(element, type, allocator), allocator);
    feature.AddMember("properties", properties, allocator);
    static_cast<Value &>(element) = feature;
    return true;
}

void interpretProperties(rapidjson::Document &feature)
{
    if (!feature.IsObject() || !feature.HasMember("properties") || !feature["properties"].IsObject())
        return;
    for (const Maker &maker : MAKERS) {
        if (!memberOf(feature["properties"], maker.mark))
            continue;
        addFrom(maker, feature["properties"], feature.GetAllocator());
        if (maker.usesOrigin)
            dropOrigin(feature);
    }
}

} // namespace formats
