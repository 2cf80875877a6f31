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

/// Fills a new place from a GeoJSON feature, nested at most MAX_DEPTH deep. Returns the error, after which the content
/// of the place is undefined; empty on success.
QString readFeature(const rapidjson::Value &feature, vela::platform::places::Place &place);

/// A feature built from texts, for text-only formats. Empty texts are unset values.
class TextFeature
{
public:
    TextFeature();

    /// Sets the position: degrees and metres as decimal numbers. Without effect when longitude and latitude are empty.
    /// An invalid number makes read() fail.
    void setPosition(const QString &longitude, const QString &latitude, const QString &altitude = {});
    /// Sets a property by its GeoJSON name, unless it is set already. The elements of a list are separated by
    /// semicolons.
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
