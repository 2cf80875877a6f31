// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "FlatFeature.h"
#include "PlaceReader.h"

#include <QtCore/QByteArray>
#include <QtCore/QSet>
#include <QtCore/QString>

#include <rapidjson/document.h>

namespace formats
{

/// A feature built from texts, for text-only formats. Empty texts are unset values, except that an empty text for a
/// list is an empty list.
class TextFeature
{
public:
    /// @param keep how the format changes a text when it stores it; null when it stores all texts unchanged.
    explicit TextFeature(KeepText keep = nullptr);

    /// Sets the position: degrees and metres as decimal numbers. No effect when longitude and latitude are empty.
    /// read() reports any other text as a problem.
    void setPosition(const QString &longitude, const QString &latitude, const QString &altitude = {});
    /// Sets a geometry other than a point. `json` is a GeoJSON geometry; invalid JSON has no effect.
    void setGeometry(const QByteArray &json);
    /// Sets the content of FlatFeature::rest(); call it before the other setters. A value of the rest is kept when a
    /// setter gives the same text for it. False when `json` is not an object, is nested deeper than MAX_DEPTH, or has
    /// more than MAX_LIST_LENGTH members or properties.
    bool setRest(const QString &json);
    /// Sets the id of the feature.
    void setId(const QString &id);
    /// Sets a property by its GeoJSON name unless it is already set. splitList() reads the text of a list.
    void set(const QString &name, const QString &value);
    /// Reads the feature, as readFeature() does.
    void read(const ReadOptions &options, ReadPlace &read) const;

private:
    rapidjson::Value toValue(const QString &text);
    /// Sets a member to a text, or removes it when the text is empty. A member with the same text is not changed.
    void replace(rapidjson::Value &object, const QString &name, const QString &text);
    /// The text of a member as the format stores it.
    [[nodiscard]] QString keptText(const QString &name, const rapidjson::Value &value) const;

    KeepText m_keep;
    rapidjson::Document m_feature{rapidjson::kObjectType};
    QSet<QString> m_names;
    QSet<QString> m_restNames; ///< Names of the properties in the rest.
};

} // namespace formats
