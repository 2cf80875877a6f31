// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Random.h"

#include <places/Coordinates.h>

#include <QtCore/QHash>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace vela::platform::places
{
class Place;
}

namespace bench
{

// Owners, tags and types of generated places, by the share of places that have them.
constexpr char FREQUENT_OWNER[] = "org.example.maps";  ///< Of 60 %.
constexpr char MIDDLE_OWNER[] = "org.example.travel";  ///< Of 1 %.
constexpr char RARE_OWNER[] = "org.example.collector"; ///< Of 0.01 %.
constexpr char FREQUENT_TAG[] = "holiday";             ///< Of 10 %.
constexpr char MIDDLE_TAG[] = "work";                  ///< Of 1 %.
constexpr char RARE_TAG[] = "treasure";                ///< Of 0.01 %.

/// Generates places like those of an import and a year of use. The same seed gives the same places.
class PlaceMaker : private Random
{
public:
    using Random::below;

    /// Changes with the generated places.
    static constexpr int VERSION = 1;

    struct MadePlace
    {
        std::string feature; ///< Imported GeoJSON feature of about 215 bytes.
        std::unique_ptr<vela::platform::places::Place> place;
    };

    explicit PlaceMaker(std::uint64_t seed = 1);

    MadePlace next();
    /// A word of a real name.
    const QString &word();
    /// A real city with its position.
    struct City
    {
        QString name;
        QString region;
        QString country;
        vela::platform::places::Coordinates position;
    };
    const City &city();

private:
    void readNames(const char *file, bool areCities);
    QString name();
    QString uniqueName();
    double nearby(double degrees);
    std::string feature(const QString &id, const QString &name);
    void addUse(vela::platform::places::Place &place);
    void addTags(vela::platform::places::Place &place);
    void addContact(vela::platform::places::Place &place) const;
    QString owner();

    std::uint64_t m_made = 0;
    std::vector<City> m_cities;
    QStringList m_words;         ///< Words that do not start with "s", by frequency.
    QStringList m_rarities;      ///< The same without duplicates.
    QStringList m_sWords;        ///< Words that start with "s" but not with "san".
    QStringList m_sanWords;      ///< Words that start with "san".
    QHash<QString, int> m_names; ///< How often a name was generated.
};

} // namespace bench
