// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "PlaceMaker.h"

#include "formats/Feature.h"
#include "formats/GeoJsonReader.h"
#include "formats/Input.h"
#include "model/PlacePrivate.h"
#include "places/Tags.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <iostream>

namespace bench
{

using namespace vela::platform::places;

namespace
{

// Shares of names.
constexpr double WITH_SAN = 0.0175; ///< With a word that starts with "san".
constexpr double WITH_S = 0.14;     ///< With a word that starts with "s".
constexpr double OF_THREE_WORDS = 0.25;

// One place in so many.
constexpr std::uint64_t FAVORITES = 100;
constexpr std::uint64_t USED = 20;
constexpr std::uint64_t RECENT = 50;
constexpr std::uint64_t CONTACTS = 5000;
constexpr std::uint64_t RARE = 10000;
constexpr std::uint64_t OWN_TAGS = 20;
/// Number of different tags of these places.
constexpr std::uint64_t OWN_TAG_COUNT = 300;
constexpr std::uint64_t OTHER_OWNERS = 20;

constexpr quint64 NOW = 1767225600; ///< Time of the last use, in seconds since 1970-01-01T00:00:00 UTC.
constexpr quint64 YEAR = quint64{365} * 24 * 3600;
/// Maximum distance between a place and its city, in degrees.
constexpr double CITY_RADIUS = 0.3;
constexpr double LAST_LATITUDE = 89.9;

const char *const KINDS[] = {"city", "village", "station", "museum", "harbour", "park", "market", "viewpoint"};

bool startsWith(const QString &word, const char *prefix)
{
    return word.normalized(QString::NormalizationForm_D).startsWith(QLatin1String(prefix), Qt::CaseInsensitive);
}

/// A word without need for quoting.
bool isPlainWord(const QString &word)
{
    return std::all_of(word.begin(), word.end(),
                       [](QChar each) { return each.isLetter() || each == QLatin1Char('-'); });
}

QString textOf(const char *text)
{
    return QString::fromLatin1(text);
}

} // namespace

PlaceMaker::PlaceMaker(std::uint64_t seed)
    : Random(seed)
{
    readNames(SOURCES "/examples/data/cities.geojson", true);
    readNames(SOURCES "/examples/data/airports.geojson", false);
    m_rarities = m_words;
    m_rarities.removeDuplicates();
}

void PlaceMaker::readNames(const char *file, bool areCities)
{
    formats::Input input{QString::fromUtf8(file)};
    const QString problem = formats::readGeoJson(input, {}, [&](const formats::ReadPlace &read) {
        if (!read.place)
            return true;
        const Address address = read.place->primaryAddress();
        if (areCities)
            m_cities.push_back(
                {read.place->name(), address.region(), address.country(), read.place->primaryCoordinates()});
        for (const QString &word : read.place->name().split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
            if (isPlainWord(word))
                (startsWith(word, "san") ? m_sanWords : startsWith(word, "s") ? m_sWords : m_words).append(word);
        }
        return true;
    });
    if (m_words.isEmpty()) {
        std::cerr << "service_bench: " << file << ": " << qPrintable(problem) << "\n";
        std::exit(EXIT_FAILURE);
    }
}

const QString &PlaceMaker::word()
{
    return oneOf(m_words);
}

const PlaceMaker::City &PlaceMaker::city()
{
    return oneOf(m_cities);
}

QString PlaceMaker::name()
{
    QStringList words{oneOf(m_rarities), word()};
    if (fraction() < OF_THREE_WORDS)
        words.append(word());
    const double kind = fraction();
    if (kind < WITH_S)
        words[static_cast<int>(below(2))] = kind < WITH_SAN ? oneOf(m_sanWords) : oneOf(m_sWords);
    return words.join(QLatin1Char(' '));
}

QString PlaceMaker::uniqueName()
{
    const QString made = name();
    const int before = m_names[made]++;
    return before == 0 ? made : made + QLatin1Char(' ') + QString::number(before + 1);
}

/// Most places of a city are close to its centre.
double PlaceMaker::nearby(double degrees)
{
    return degrees + (fraction() + fraction() + fraction() - 1.5) / 1.5 * CITY_RADIUS;
}

std::string PlaceMaker::feature(const QString &id, const QString &name)
{
    const City &centre = city();
    const double latitude = std::fmin(std::fmax(nearby(centre.position.latitude()), -LAST_LATITUDE), LAST_LATITUDE);
    const double longitude = std::remainder(nearby(centre.position.longitude()), 360);
    const auto population = static_cast<int>(std::exp(5 + 10 * fraction()));
    return QStringLiteral(R"({"type":"Feature","id":"%1","geometry":{"type":"Point","coordinates":[%2,%3]},)"
                          R"("properties":{"name":"%4","kind":"%5","region":"%6","country":"%7","population":%8}})")
        .arg(id, QString::number(longitude, 'f', 5), QString::number(latitude, 'f', 5), name,
             textOf(KINDS[below(std::size(KINDS))]), centre.region, centre.country, QString::number(population))
        .toStdString();
}

PlaceMaker::MadePlace PlaceMaker::next()
{
    const QString made = uniqueName();
    MadePlace next{feature(QStringLiteral("made:%1").arg(m_made), made), std::make_unique<Place>()};
    rapidjson::Document document;
    document.Parse(next.feature.c_str());
    if (const QString problem =
            document.HasParseError() ? textOf("no JSON") : formats::readFeature(document, *next.place);
        !problem.isEmpty()) {
        std::cerr << "service_bench: " << next.feature << ": " << qPrintable(problem) << "\n";
        std::exit(EXIT_FAILURE);
    }
    addUse(*next.place);
    addTags(*next.place);
    addContact(*next.place);
    next.place->setOwner(owner());
    ++m_made;
    return next;
}

void PlaceMaker::addUse(Place &place)
{
    PlacePrivate &data = *PlacePrivate::privateFromPublic(&place);
    data.setCreatedTime(NOW - below(3 * YEAR));
    data.setUpdatedTime(data.createdTime() + below(NOW - data.createdTime() + 1));
    const bool isRecent = m_made % RECENT == 9;
    if (isRecent)
        data.setPersistenceMask(m_made % (2 * RECENT) == 9 ? PlacePrivate::RECENT_AND_SAVED
                                                           : PlacePrivate::InRecentBucket);
    if (!isRecent && m_made % USED != 3)
        return;
    data.setUsageCount(1 + static_cast<int>(below(50)));
    data.setLastUsedTime(NOW - below(YEAR));
}

void PlaceMaker::addTags(Place &place)
{
    if (m_made % FAVORITES == 7)
        place.addTag(Tags::Favorite);
    if (m_made % 10 == 1)
        place.addTag(textOf(FREQUENT_TAG));
    if (m_made % 100 == 12)
        place.addTag(textOf(MIDDLE_TAG));
    if (m_made % RARE == 23)
        place.addTag(textOf(RARE_TAG));
    if (m_made % OWN_TAGS == 4)
        place.addTag(QStringLiteral("tag %1").arg(below(OWN_TAG_COUNT)));
}

/// Makes a few places contacts, and a few meeting rooms.
void PlaceMaker::addContact(Place &place) const
{
    const std::uint64_t kind = m_made % CONTACTS;
    if (kind > 1)
        return;
    AuxiliaryData contact(AuxiliaryData::TypeContact);
    contact.setExternalId(QStringLiteral("9,%1,1").arg(m_made));
    contact.addProperty(QStringLiteral("kind"), kind == 0 ? QStringLiteral("individual") : QStringLiteral("room"));
    place.addAuxiliaryData(contact);
}

QString PlaceMaker::owner()
{
    if (m_made % RARE == 34)
        return textOf(RARE_OWNER);
    const double share = fraction();
    if (share < 0.6)
        return textOf(FREQUENT_OWNER);
    return share < 0.61 ? textOf(MIDDLE_OWNER) : QStringLiteral("org.example.app%1").arg(below(OTHER_OWNERS));
}

} // namespace bench
