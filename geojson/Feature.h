// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QString>

#include <rapidjson/document.h>

namespace vela::platform::places
{
class Place;
}

namespace geojson
{

/// Deepest nesting of a feature or document.
constexpr int MAX_DEPTH = 64;

/// Fills a new place from a GeoJSON feature, whose nesting is at most MAX_DEPTH. Returns why it is no place, and the
/// place is then of no use; empty when it is one.
QString readFeature(const rapidjson::Value &feature, vela::platform::places::Place &place);

/// A feature put together from texts, for the formats that have nothing else. Texts that are empty stand for nothing.
class TextFeature
{
public:
    TextFeature();

    /// Sets the position: degrees and metres as decimal numbers; without effect when longitude and latitude are empty.
    /// What is no number makes the feature no place.
    void setPosition(const QString &longitude, const QString &latitude, const QString &altitude = {});
    /// Sets a property under its GeoJSON name.
    void set(const QString &name, const QString &value);
    /// Sets a property that is a list.
    void set(const QString &name, const QStringList &values);

    /// Fills a new place, as readFeature() does.
    QString read(vela::platform::places::Place &place) const;

private:
    rapidjson::Value toValue(const QString &text);
    void add(const QString &name, rapidjson::Value value);

    rapidjson::Document m_feature{rapidjson::kObjectType};
};

} // namespace geojson
