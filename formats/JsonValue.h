// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QString>

#include <cmath>
#include <optional>
#include <string_view>

#include <rapidjson/document.h>

/// Helpers to read JSON values.
namespace formats
{

inline std::string_view viewOf(const rapidjson::Value &text)
{
    return {text.GetString(), text.GetStringLength()};
}

inline QString textOf(const rapidjson::Value &text)
{
    return QString::fromUtf8(text.GetString(), static_cast<int>(text.GetStringLength()));
}

/// The member with this name, the last one if there are several; null when there is none or `object` is not an object.
inline const rapidjson::Value *memberOf(const rapidjson::Value &object, const char *name)
{
    if (!object.IsObject())
        return nullptr;
    for (auto member = object.MemberEnd(); member != object.MemberBegin();) {
        --member;
        if (viewOf(member->name) == name)
            return &member->value;
    }
    return nullptr;
}

/// A string, number or bool as a text.
inline std::optional<QString> scalarOf(const rapidjson::Value &value)
{
    if (value.IsString())
        return textOf(value);
    if (value.IsInt64())
        return QString::number(value.GetInt64());
    if (value.IsNumber())
        return QString::number(value.GetDouble(), 'g', 17);
    if (value.IsBool())
        return value.GetBool() ? QStringLiteral("true") : QStringLiteral("false");
    return std::nullopt;
}

/// A member that is a string, number or bool, as a text; empty for any other value.
inline QString textMember(const rapidjson::Value &object, const char *name)
{
    const rapidjson::Value *value = memberOf(object, name);
    return value ? scalarOf(*value).value_or(QString()) : QString();
}

/// The finite number that a text contains; std::nullopt for any other text.
inline std::optional<double> toNumber(const QString &text)
{
    bool isNumber = false;
    const double number = text.toDouble(&isNumber);
    return isNumber && std::isfinite(number) ? std::optional(number) : std::nullopt;
}

} // namespace formats
