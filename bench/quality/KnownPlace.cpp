// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "KnownPlace.h"

#include "formats/Vocabulary.h"

#include <places/AbstractPlace.h>
#include <places/AuxiliaryData.h>
#include <places/Place.h>
#include <places/Tags.h>

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QRegularExpression>

#include <algorithm>
#include <cmath>

namespace bench
{

using namespace vela::platform::places;

namespace
{

constexpr double SAME_PLACE = 1000; // metres
constexpr double METRES_PER_DEGREE = 111195;
constexpr double RADIANS_PER_DEGREE = 0.017453292519943295;
constexpr int AIRPORT_CODE_LENGTH = 3;

/// Properties with other names, in the place's own language or any other.
constexpr const char *OTHER_NAMES[] = {"alt_name", "int_name", "official_name", "short_name",
                                       "loc_name", "old_name", "keywords"};

/// Approximation for short distances.
double metresBetween(const Coordinates &one, const Coordinates &other)
{
    const double north = one.latitude() - other.latitude();
    const double east =
        std::remainder(one.longitude() - other.longitude(), 360) * std::cos(one.latitude() * RADIANS_PER_DEGREE);
    return METRES_PER_DEGREE * std::hypot(north, east);
}

AuxiliaryData recordOf(const Place &place, const QString &type)
{
    for (int i = 0; i < place.auxiliaryDataCount(); ++i) {
        if (place.auxiliaryData(i).type() == type)
            return place.auxiliaryData(i);
    }
    return AuxiliaryData(type);
}

QString idOf(const Place &place)
{
    return recordOf(place, AuxiliaryData::TypePointOfInterest).externalId();
}

/// True for codes such as "LYPR" and "AJ4".
bool isCode(const QString &text)
{
    return std::all_of(text.begin(), text.end(), [](QChar each) {
        return each.unicode() < 0x80 && (each.isUpper() || each.isDigit() || each.isSpace());
    });
}

/// True for IATA codes such as "ZRH".
bool isAirportCode(const QString &alias)
{
    return alias.size() == AIRPORT_CODE_LENGTH
           && std::all_of(alias.begin(), alias.end(), [](QChar each) { return each.isUpper(); });
}

/// The names in a property of JSON text.
QStringList namesIn(const QString &json)
{
    static const QRegularExpression SEPARATORS(QStringLiteral("[;,]"));
    QStringList names;
    const QString text = QJsonDocument::fromJson("[" + json.toUtf8() + "]").array().at(0).toString();
    for (const QString &name : text.split(SEPARATORS, Qt::SkipEmptyParts)) {
        if (const QString trimmed = name.trimmed(); !isCode(trimmed))
            names.append(trimmed);
    }
    return names;
}

bool isOtherName(const QString &property)
{
    const QString key = property.section(QLatin1Char(':'), 0, 0);
    return std::any_of(std::begin(OTHER_NAMES), std::end(OTHER_NAMES),
                       [&](const char *each) { return key == QLatin1String(each); });
}

} // namespace

KnownPlace::KnownPlace(const Place &place)
    : id(idOf(place))
    , name(place.name())
    , region(place.primaryAddress().region())
    , country(place.primaryAddress().country())
    , countryCode(place.primaryAddress().isoAlpha2CountryCode())
    , isAirport(place.hasTag(Tags::Airport))
    , position(place.primaryCoordinates())
{
    const auto properties = recordOf(place, QLatin1String(formats::vocabulary::FOREIGN_PROPERTIES)).properties();
    for (auto each = properties.begin(); each != properties.end(); ++each) {
        if (each.key().startsWith(QLatin1String("name:")))
            translations += namesIn(each.value());
        else if (isOtherName(each.key()))
            otherNames += namesIn(each.value());
    }
    const QStringList aliases = place.aliases();
    const auto code = std::find_if(aliases.begin(), aliases.end(), isAirportCode);
    if (isAirport && code != aliases.end())
        airportCode = *code;
}

bool KnownPlace::isFoundAs(const AbstractPlace &found) const
{
    const auto *place = dynamic_cast<const Place *>(&found);
    if (place && !id.isEmpty() && idOf(*place) == id)
        return true;
    return found.name() == name && metresBetween(found.primaryCoordinates(), position) <= SAME_PLACE;
}

} // namespace bench
