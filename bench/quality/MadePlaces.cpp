// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "MadePlaces.h"

#include "Random.h"

#include <QtCore/QFile>
#include <QtCore/QHash>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

#include <algorithm>
#include <cmath>

namespace bench
{

namespace
{

constexpr int SHORTEST_TO_CROSS = 4; // letters
/// More frequent words, such as "Airport", are not crossed.
constexpr int MOST_TIMES = 20;
constexpr std::uint64_t ONE_WITH_OTHER_NAME = 5;
constexpr std::uint64_t ONE_AIRPORT = 20;
constexpr int CODE_LETTERS = 4;
/// Fewer than in any known city.
constexpr double MOST_PEOPLE = 50000;
constexpr double DEGREES_AROUND = 0.5;
constexpr double LAST_LATITUDE = 89.9;

bool isCrossable(const QString &word)
{
    return word.size() >= SHORTEST_TO_CROSS && std::all_of(word.begin(), word.end(), [](QChar each) {
               return each.isLetter() && each.script() == QChar::Script_Latin;
           });
}

class MadePlaces : private Random
{
public:
    MadePlaces(const KnownPlaces &known, std::uint64_t seed)
        : Random(seed)
    {
        for (const KnownPlace &place : known.all()) {
            (place.isAirport ? m_airports : m_cities).push_back(&place);
            for (const QString &word : place.name.split(QLatin1Char(' '))) {
                if (isCrossable(word))
                    ++m_words[word];
            }
        }
        for (auto word = m_words.begin(); word != m_words.end(); ++word) {
            if (word.value() <= MOST_TIMES)
                m_rare.append(word.key());
        }
        m_rare.sort();
    }

    QByteArray feature(int number)
    {
        const bool isAirport = below(ONE_AIRPORT) == 0;
        const KnownPlace &near = *oneOf(isAirport ? m_airports : m_cities);
        QJsonObject properties{{QStringLiteral("name"), nameLike(near)},
                               {QStringLiteral("kind"), QLatin1String(isAirport ? "small_airport" : "village")},
                               {QStringLiteral("region"), near.region},
                               {QStringLiteral("country"), near.country},
                               {QStringLiteral("countryCode"), near.countryCode}};
        if (isAirport)
            properties[QStringLiteral("icao")] = code();
        else
            properties[QStringLiteral("population")] = std::floor(MOST_PEOPLE * fraction());
        if (below(ONE_WITH_OTHER_NAME) == 0)
            properties[QStringLiteral("alt_name")] = nameLike(near);
        const double longitude = std::remainder(around(near.position.longitude()), 360);
        const double latitude = std::clamp(around(near.position.latitude()), -LAST_LATITUDE, LAST_LATITUDE);
        const QJsonObject geometry{{QStringLiteral("type"), QStringLiteral("Point")},
                                   {QStringLiteral("coordinates"), QJsonArray{longitude, latitude}}};
        return QJsonDocument(QJsonObject{{QStringLiteral("type"), QStringLiteral("Feature")},
                                         {QStringLiteral("id"), QStringLiteral("made:%1").arg(number)},
                                         {QStringLiteral("geometry"), geometry},
                                         {QStringLiteral("properties"), properties}})
            .toJson(QJsonDocument::Compact);
    }

private:
    QString nameLike(const KnownPlace &place)
    {
        QStringList words = place.name.split(QLatin1Char(' '));
        for (QString &word : words) {
            if (const int times = m_words.value(word); times > 0 && times <= MOST_TIMES && below(2) == 0)
                word = crossed(word);
        }
        const QString name = words.join(QLatin1Char(' '));
        return name == place.name ? crossed(oneOf(m_rare)) + QLatin1Char(' ') + name : name;
    }

    QString crossed(const QString &word) { return word.left((word.size() + 1) / 2) + oneOf(m_rare).mid(2).toLower(); }

    QString code()
    {
        QString letters;
        for (int i = 0; i < CODE_LETTERS; ++i)
            letters += QLatin1Char(static_cast<char>('A' + below(26)));
        return letters;
    }

    double around(double degrees) { return degrees + (2 * fraction() - 1) * DEGREES_AROUND; }

    std::vector<const KnownPlace *> m_cities;
    std::vector<const KnownPlace *> m_airports;
    QHash<QString, int> m_words; ///< Frequency in names, of words that can be crossed.
    QStringList m_rare;          ///< Words that are crossed.
};

} // namespace

void writeMadePlaces(const QString &path, const KnownPlaces &known, int count, std::uint64_t seed)
{
    MadePlaces made(known, seed);
    QFile file(path);
    file.open(QIODevice::WriteOnly);
    file.write("{\"type\":\"FeatureCollection\",\"features\":[");
    for (int i = 0; i < count; ++i)
        file.write((i > 0 ? ",\n" : "\n") + made.feature(i));
    file.write("\n]}\n");
}

} // namespace bench
