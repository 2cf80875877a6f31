// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QSet>
#include <QtCore/QString>

#include <functional>
#include <optional>

#include <rapidjson/document.h>

namespace vela::platform::places
{
class Location;
class Place;
class PointOfInterestAuxiliaryData;
} // namespace vela::platform::places

namespace formats
{

/// Deepest nesting of a feature or document.
constexpr int MAX_DEPTH = 64;

/// Most members of a list or object that become members of a place: what a places service stores. A place of more is
/// refused before it is put together, which takes the square of their number.
constexpr int MAX_LIST_LENGTH = 1000;

/// An accuracy as places keep it; nothing for what is none: a negative number, or one beyond a float.
std::optional<float> toAccuracy(double metres);

/// True when a location tells where something is. A place cannot be stored with one that does not.
bool locates(const vela::platform::places::Location &location);

/// True for a property, or a member of a feature, that readFeature() has no use for and keeps as it is: one of an
/// unknown name, and one of a known name that is not of its kind.
bool isForeignProperty(const QString &name, const rapidjson::Value &value);
bool isForeignMember(const QString &name, const rapidjson::Value &value);

/// Changes the place's record of points of interest, a new one if it has none.
void changePointOfInterest(vela::platform::places::Place &place,
                           const std::function<void(vela::platform::places::PointOfInterestAuxiliaryData &)> &change);

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
    /// Sets a property under its GeoJSON name, unless it is set already. A list stands in one text, its elements apart
    /// by semicolons.
    void set(const QString &name, const QString &value);

    /// Fills a new place, as readFeature() does.
    QString read(vela::platform::places::Place &place) const;

private:
    rapidjson::Value toValue(const QString &text);

    rapidjson::Document m_feature{rapidjson::kObjectType};
    QSet<QString> m_names;
    bool m_hasBadAltitude = false;
};

} // namespace formats
