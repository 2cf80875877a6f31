// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "FlatFeature.h"

#include "ExactJson.h"
#include "Feature.h"
#include "GeoJsonWriter.h"
#include "JsonValue.h"
#include "Vocabulary.h"

#include <places/Place.h>

#include <QtCore/QLocale>

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <algorithm>

namespace formats
{

using namespace vela::platform::places;
using rapidjson::SizeType;
using rapidjson::Value;
using vocabulary::Kind;

namespace
{

template <typename Object>
auto find(Object &object, const QString &name)
{
    const QByteArray bytes = name.toUtf8();
    return object.FindMember(Value(bytes.constData(), static_cast<SizeType>(bytes.size())));
}

std::optional<QString> scalarText(const Value &value)
{
    if (value.IsString())
        return textOf(value);
    if (value.IsInt64())
        return QString::number(value.GetInt64());
    if (value.IsUint64())
        return QString::number(value.GetUint64());
    if (value.IsDouble())
        return QString::number(value.GetDouble(), 'g', QLocale::FloatingPointShortest);
    if (value.IsBool())
        return value.GetBool() ? QStringLiteral("true") : QStringLiteral("false");
    return std::nullopt;
}

QStringList textsOf(const Value &list)
{
    QStringList texts;
    for (const Value &element : list.GetArray())
        texts.append(scalarText(element).value_or(QString()));
    return texts;
}

/// True when a reader restores the value from its text.
bool isExact(const QString &name, const Value &value, const QString &text)
{
    if (isForeignProperty(name, value))
        return value.IsString() && !text.isEmpty() && textOf(value) == text;
    if (value.IsArray())
        return splitList(text) == textsOf(value);
    return !value.IsString() || textOf(value) == text;
}

/// The JSON of a feature with these members and properties.
template <typename Encoding>
QString write(const Value &feature, const Value &properties)
{
    rapidjson::StringBuffer text;
    rapidjson::Writer<rapidjson::StringBuffer, rapidjson::UTF8<>, Encoding> writer(text);
    writer.StartObject();
    for (const auto &member : feature.GetObject()) {
        member.name.Accept(writer);
        member.value.Accept(writer);
    }
    if (!properties.ObjectEmpty()) {
        writer.Key("properties");
        properties.Accept(writer);
    }
    writer.EndObject();
    return QString::fromUtf8(text.GetString(), static_cast<int>(text.GetSize()));
}

} // namespace

QStringList splitList(const QString &text)
{
    QStringList elements{QString()};
    for (int i = 0; i < text.size(); ++i) {
        const QChar next = i + 1 < text.size() ? text[i + 1] : QChar();
        if (text[i] == QLatin1Char('\\') && (next == QLatin1Char(';') || next == QLatin1Char('\\')))
            elements.last().append(text[++i]);
        else if (text[i] == QLatin1Char(';'))
            elements.append(QString());
        else
            elements.last().append(text[i]);
    }
    for (QString &element : elements)
        element = element.trimmed();
    elements.removeAll(QString());
    return elements;
}

QString joinList(const QStringList &elements)
{
    QStringList escaped = elements;
    escaped.replaceInStrings(QStringLiteral("\\"), QStringLiteral("\\\\"));
    escaped.replaceInStrings(QStringLiteral(";"), QStringLiteral("\\;"));
    return escaped.join(QStringLiteral("; "));
}

std::optional<QString> flatText(const QString &name, const Value &value)
{
    const Kind kind = vocabulary::kinds().value(name);
    const bool isForeign = isForeignProperty(name, value);
    if (kind == Kind::Texts && vocabulary::kinds().contains(name))
        return isForeign || value.IsNull() ? std::nullopt : std::optional(joinList(textsOf(value)));
    if (isForeign)
        return scalarText(value);
    if (kind == Kind::Flag && value.IsFalse())
        return QString();
    return scalarText(value);
}

FlatFeature::FlatFeature(const Place &place, KeepText keep)
    : m_keep(keep)
    , m_position(place.primaryCoordinates())
{
    ExactDocument feature;
    feature.read(toGeoJsonFeature(place).constData());
    m_feature.CopyFrom(feature, m_feature.GetAllocator());
    m_properties = m_feature["properties"];
    for (const char *name : {"type", "geometry", "properties"})
        m_feature.RemoveMember(name);
}

QString FlatFeature::takeId()
{
    return takeFrom(m_feature, QLatin1String(vocabulary::ID));
}

QString FlatFeature::id() const
{
    return textIn(m_feature, QLatin1String(vocabulary::ID)).value_or(QString());
}

QString FlatFeature::text(const QString &name) const
{
    return textIn(m_properties, name).value_or(QString());
}

QString FlatFeature::take(const QString &name)
{
    m_taken.insert(name);
    return takeFrom(m_properties, name);
}

QStringList FlatFeature::names() const
{
    QStringList names;
    for (const auto &property : m_properties.GetObject()) {
        const QString name = textOf(property.name);
        if (!m_taken.contains(name) && flatText(name, property.value))
            names.append(name);
    }
    return names;
}

QString FlatFeature::rest() const
{
    if (m_feature.ObjectEmpty() && m_properties.ObjectEmpty())
        return {};
    const QString text = write<rapidjson::UTF8<>>(m_feature, m_properties);
    return m_keep(QLatin1String(vocabulary::REST), text) == text ? text
                                                                 : write<rapidjson::ASCII<>>(m_feature, m_properties);
}

std::optional<QString> FlatFeature::textIn(const Value &object, const QString &name) const
{
    const auto member = find(object, name);
    const std::optional<QString> text = member == object.MemberEnd() ? std::nullopt : flatText(name, member->value);
    return text ? std::optional(m_keep(name, *text)) : std::nullopt;
}

QString FlatFeature::takeFrom(Value &object, const QString &name)
{
    const std::optional<QString> text = textIn(object, name);
    if (text && isExact(name, find(object, name)->value, *text))
        object.EraseMember(find(object, name));
    return text.value_or(QString());
}

} // namespace formats
