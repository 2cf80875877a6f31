// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "FlatFeature.h"
#include "PlaceReader.h"

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

/// Maximum number of members of a list or object that become members of a place, as in the service. A larger place is
/// refused before it is built, because building takes quadratic time.
constexpr int MAX_LIST_LENGTH = 1000;

/// An accuracy as a place stores it; std::nullopt for a negative number or one beyond the range of float.
std::optional<float> toAccuracy(double metres);

/// True when a location has a position, an address or virtual data. A place is stored only with such locations.
bool locates(const vela::platform::places::Location &location);

/// True for a property or feature member that readFeature() cannot interpret and keeps unchanged: its name is unknown,
/// or its value has another type.
bool isForeignProperty(const QString &name, const rapidjson::Value &value);
bool isForeignMember(const QString &name, const rapidjson::Value &value);

/// Changes the place's record of points of interest; adds the record if there is none.
void changePointOfInterest(vela::platform::places::Place &place,
                           const std::function<void(vela::platform::places::PointOfInterestAuxiliaryData &)> &change);

/// Reads a GeoJSON feature, nested at most MAX_DEPTH deep, into the place, problem, kind, id and losses of `result`. A
/// feature without a name becomes a place with the default name.
void readFeature(const rapidjson::Value &feature, const ReadOptions &options, ReadPlace &result);
/// The same into a new place, without options. Returns why the feature is no place; the place is then undefined. Empty
/// on success.
QString readFeature(const rapidjson::Value &feature, vela::platform::places::Place &place);

/// A feature built from texts, for text-only formats. Empty texts are unset values, except that an empty text for a
/// list is an empty list.
class TextFeature
{
public:
    /// @param keep the text that the format stores for a text; null when it stores all texts unchanged.
    explicit TextFeature(KeepText keep = nullptr);

    /// Sets the position: degrees and metres as decimal numbers. Without effect when longitude and latitude are empty.
    /// Other texts are reported by read().
    void setPosition(const QString &longitude, const QString &latitude, const QString &altitude = {});
    /// Sets a geometry other than a point. `json` is a GeoJSON geometry; invalid JSON has no effect.
    void setGeometry(const QByteArray &json);
    /// Sets all that FlatFeature::rest() returned; call it before the other setters. A value of the rest is kept when
    /// a setter gives the same text for it. False when `json` is not an object nested at most MAX_DEPTH deep, with at
    /// most MAX_LIST_LENGTH properties.
    bool setRest(const QString &json);
    /// Sets the id of the feature.
    void setId(const QString &id);
    /// Sets a property by its GeoJSON name, unless it is set already. The text of a list is read by splitList().
    void set(const QString &name, const QString &value);
    /// Reads the feature, as readFeature() does.
    void read(const ReadOptions &options, ReadPlace &read) const;

private:
    rapidjson::Value toValue(const QString &text);
    /// Sets a member to a text, or removes it when the text is empty; a member with the same text is not changed.
    void replace(rapidjson::Value &object, const QString &name, const QString &text);
    /// The text of a member as the format stores it.
    [[nodiscard]] QString keptText(const QString &name, const rapidjson::Value &value) const;

    KeepText m_keep;
    rapidjson::Document m_feature{rapidjson::kObjectType};
    QSet<QString> m_names;
    QSet<QString> m_restNames; ///< Properties of the rest.
};

} // namespace formats
