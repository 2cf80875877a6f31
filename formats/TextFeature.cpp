// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "TextFeature.h"

#include "ExactJson.h"
#include "Feature.h"
#include "JsonValue.h"
#include "Vocabulary.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace formats
{

using rapidjson::SizeType;
using rapidjson::Value;

namespace
{

/// True for a value that is nested deeper than `levels`.
bool isDeeper(const Value &value, int levels)
{
    if (value.IsObject())
        return levels == 0 || std::any_of(value.MemberBegin(), value.MemberEnd(), [levels](const auto &member) {
                   return isDeeper(member.value, levels - 1);
               });
    if (value.IsArray())
        return levels == 0 || std::any_of(value.Begin(), value.End(), [levels](const Value &element) {
                   return isDeeper(element, levels - 1);
               });
    return false;
}

} // namespace

TextFeature::TextFeature(KeepText keep)
    : m_keep(keep)
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
        const std::optional<double> number = toNumber(text);
        coordinates.PushBack(number ? Value(*number) : toValue(text), allocator);
    };
    append(longitude);
    append(latitude);
    if (!altitude.isEmpty())
        append(altitude);
    Value geometry(rapidjson::kObjectType);
    geometry.AddMember("type", "Point", allocator);
    geometry.AddMember("coordinates", coordinates, allocator);
    m_feature.RemoveMember("geometry");
    m_feature.AddMember("geometry", geometry, allocator);
}

void TextFeature::setGeometry(const QByteArray &json)
{
    ExactDocument geometry;
    if (geometry.read(json.constData()).IsError())
        return;
    m_feature.RemoveMember("geometry");
    m_feature.AddMember("geometry", Value(geometry, m_feature.GetAllocator()), m_feature.GetAllocator());
}

bool TextFeature::setRest(const QString &json)
{
    constexpr SizeType MOST = MAX_LIST_LENGTH;
    ExactDocument rest;
    if (rest.read(json.toUtf8().constData()).IsError() || !rest.IsObject() || isDeeper(rest, MAX_DEPTH))
        return false;
    const Value *properties = memberOf(rest, "properties");
    const bool hasProperties = properties && properties->IsObject();
    if (rest.MemberCount() > MOST || (hasProperties && properties->MemberCount() > MOST))
        return false;
    auto &allocator = m_feature.GetAllocator();
    for (const auto &member : rest.GetObject()) {
        const QString name = textOf(member.name);
        if (name == QLatin1String("bbox") || isForeignMember(name, member.value))
            m_feature.AddMember(Value(member.name, allocator), Value(member.value, allocator), allocator);
    }
    if (!hasProperties)
        return true;
    m_feature["properties"].CopyFrom(*properties, allocator);
    for (const auto &property : properties->GetObject())
        m_restNames.insert(textOf(property.name));
    return true;
}

void TextFeature::setId(const QString &id)
{
    if (!id.isEmpty())
        replace(m_feature, QStringLiteral("id"), id);
}

void TextFeature::set(const QString &name, const QString &value)
{
    if (m_names.contains(name))
        return;
    if (!value.isEmpty())
        m_names.insert(name);
    replace(m_feature["properties"], name, value);
}

void TextFeature::read(const ReadOptions &options, ReadPlace &read) const
{
    readFeature(m_feature, options, read);
}

void TextFeature::replace(Value &object, const QString &name, const QString &text)
{
    auto &allocator = m_feature.GetAllocator();
    const bool isId = &object == &m_feature;
    const bool isList = !isId && vocabulary::kinds().value(name) == vocabulary::Kind::Texts;
    // Other properties are set only once, so they need no search.
    const bool mayBeThere = isId || isList || m_restNames.contains(name);
    const auto member = mayBeThere ? object.FindMember(toValue(name)) : object.MemberEnd();
    const bool isThere = member != object.MemberEnd();
    if (isThere && keptText(name, member->value) == text)
        return;
    if (text.isEmpty() && !isList) {
        if (isThere)
            object.RemoveMember(member);
        return;
    }
    Value value = toValue(text);
    if (isList) {
        value.SetArray();
        const QStringList elements = splitList(text);
        for (const QString &element : elements)
            value.PushBack(toValue(element), allocator);
    }
    if (isThere)
        member->value = value;
    else
        object.AddMember(toValue(name), value, allocator);
}

QString TextFeature::keptText(const QString &name, const Value &value) const
{
    const QString text = flatText(name, value).value_or(QString());
    return m_keep ? m_keep(name, text) : text;
}

Value TextFeature::toValue(const QString &text)
{
    const QByteArray bytes = text.toUtf8();
    return Value(bytes.constData(), static_cast<SizeType>(bytes.size()), m_feature.GetAllocator());
}

} // namespace formats
