// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/Coordinates.h>

#include <QtCore/QSet>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <rapidjson/document.h>

#include <optional>

namespace vela::platform::places
{
class Place;
}

namespace formats
{

/// How a format changes a text when it stores it. `name` is the property, the id or the rest. Returns the text that a
/// reader gets.
using KeepText = QString (*)(const QString &name, const QString &text);

/// A list as one text: elements separated by semicolons, with `\;` for a semicolon and `\\` for a backslash in an
/// element. splitList() drops white space around elements, and empty elements.
QStringList splitList(const QString &text);
QString joinList(const QStringList &elements);

/// A property of a feature as one text: a list by joinList(), false as an empty text. std::nullopt for null, an object,
/// a list of an unknown property, and a list property whose value is not a list.
std::optional<QString> flatText(const QString &name, const rapidjson::Value &value);

/// The GeoJSON feature of a place as texts, for text-only formats. TextFeature restores the place from the taken texts
/// and the rest.
class FlatFeature
{
public:
    FlatFeature(const vela::platform::places::Place &place, KeepText keep);

    /// Position of the feature; invalid when it has none.
    [[nodiscard]] vela::platform::places::Coordinates position() const { return m_position; }
    /// Id of the place in the file that it was imported from; empty when it has none.
    [[nodiscard]] QString id() const;
    /// Returns the id. Removes it from the rest when the text restores it.
    QString takeId();
    /// Text of a property as the format stores it; empty when there is none.
    [[nodiscard]] QString text(const QString &name) const;
    /// Returns this text. Removes the property from the rest when the text restores it.
    QString take(const QString &name);
    /// Names of the properties that have a text and were not taken. The text of an empty list, and of false, is empty.
    [[nodiscard]] QStringList names() const;
    /// The members and properties that were not taken, or whose texts do not restore them, as the JSON of a feature
    /// without geometry. Empty when there are none.
    [[nodiscard]] QString rest() const;

private:
    [[nodiscard]] std::optional<QString> textIn(const rapidjson::Value &object, const QString &name) const;
    QString takeFrom(rapidjson::Value &object, const QString &name);

    KeepText m_keep;
    vela::platform::places::Coordinates m_position;
    rapidjson::Document m_feature;
    rapidjson::Value m_properties;
    QSet<QString> m_taken;
};

} // namespace formats
