// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "sources/Gazetteer.h"
#include "model/InternalTags.h"
#include "model/PlacePrivate.h"
#include "places/Place.h"
#include "places/Tags.h"
#include "places/Utilities.h"
#include "support/Files.h"
#include "support/Golden.h"
#include "text/TextKeys.h"

#include <gmock/gmock.h>

#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <QtCore/QThread>

#include <algorithm>
#include <random>
#include <tuple>

using namespace placesd;
using namespace vela::platform::places;

namespace
{

using Certainty = SearchResultCertainty;

constexpr int FEATURES = 1200;
const QStringList KINDS = {QStringLiteral("large_airport"), QStringLiteral("café_bar"), QStringLiteral("san_park")};
/// Among the places, far from most of them at the 180th meridian, and unknown.
const Coordinates CENTRES[] = {{47.37, 8.54}, {-20, 180}, {}};

struct Feature
{
    QString id, name, kind;
    QStringList nameWords, aliasWords, kindWords, addressWords; // sorted
    Coordinates position;
    int weight;
};

QStringList sortedWords(const QString &text)
{
    QStringList found = words(searchKey(text));
    found.sort();
    return found;
}

/// True when every word of `wanted` is a prefix of a word in `there`. Both are sorted.
bool startWords(const QStringList &there, const QStringList &wanted)
{
    return std::all_of(wanted.begin(), wanted.end(), [&there](const QString &start) {
        const auto word = std::lower_bound(there.begin(), there.end(), start);
        return word != there.end() && word->startsWith(start);
    });
}

/// Seeded features, many of them with the same name, weight and position. Writes them to a file.
std::vector<Feature> makeFeatures(QFile &file)
{
    const QStringList names = {QStringLiteral("San Jose"), QStringLiteral("Santa Ana"), QStringLiteral("Zürich"),
                               QStringLiteral("Isan"),     QStringLiteral("Old San"),   QStringLiteral("Air")};
    const QStringList ends = {QString(), QStringLiteral(" Airport"), QStringLiteral("-Station 7"),
                              QStringLiteral(" s")};
    const QStringList codes = {QStringLiteral("SAN"), QStringLiteral("AIR"), QStringLiteral("XYZ")};
    std::mt19937 random(5);
    const auto pick = [&random](const QStringList &list) {
        return list[static_cast<int>(random() % unsigned(list.size()))];
    };
    const auto around = [&random](double middle, double most) {
        return std::max(-180., std::min(180., middle + std::uniform_real_distribution<double>(-most, most)(random)));
    };
    std::vector<Feature> features;
    QStringList texts;
    for (int i = 0; i < FEATURES; ++i) {
        const double spread = i % 5 == 0 ? 0 : i % 5 == 1 ? 60 : .001;
        const Coordinates &near = CENTRES[i % 2];
        const QString name = pick(names) + pick(ends), kind = pick(KINDS), code = pick(codes), city = pick(names);
        const Coordinates position(around(near.latitude(), spread / 2), around(near.longitude(), spread));
        features.push_back({QString::number(i), name, kind, sortedWords(name), sortedWords(code), sortedWords(kind),
                            sortedWords(city + QStringLiteral(" Santa Land SL")), position, int(random() % 40)});
        texts.append(QStringLiteral(R"({"type":"Feature","id":"%1","geometry":{"type":"Point","coordinates":[%2,%3]},)"
                                    R"("properties":{"name":"%4","kind":"%5","iata":"%6","city":"%7","population":%8,)"
                                    R"("region":"Santa","country":"Land","countryCode":"SL"}})")
                         .arg(QString::number(i), QString::number(position.longitude(), 'g', 17),
                              QString::number(position.latitude(), 'g', 17), name, kind, code, city)
                         .arg(features.back().weight));
    }
    file.open(QIODevice::WriteOnly);
    file.write(R"({"type":"FeatureCollection","features":[)" + texts.join(QLatin1Char(',')).toUtf8() + "]}");
    file.close();
    return features;
}

/// True when the term is the code of a feature.
bool isCode(const Feature &feature, SearchKind kind, const QString &key)
{
    return kind != SearchKind::Category && feature.aliasWords == QStringList{key};
}

bool isFound(const Feature &feature, SearchKind kind, const QStringList &wanted, bool inNames)
{
    const bool byName = kind != SearchKind::Category;
    const bool byKind = kind == SearchKind::Category || kind == SearchKind::CategoryOrName || !inNames;
    return std::all_of(wanted.begin(), wanted.end(), [&](const QString &word) {
        return (byName && startWords(feature.nameWords, {word})) || (byKind && startWords(feature.kindWords, {word}))
               || (byName && !inNames
                   && (startWords(feature.addressWords, {word}) || startWords(feature.aliasWords, {word})));
    });
}

int tierOf(const Feature &feature, SearchKind kind, const QString &key, const QStringList &wanted)
{
    const QString name = searchKey(feature.name);
    if (name == key)
        return 0;
    if (isCode(feature, kind, key))
        return 1;
    return name.startsWith(key) ? 2 : startWords(feature.nameWords, wanted) ? 3 : 4;
}

/// External ids of all results of a search, by ranking all features.
QStringList rankAll(std::vector<Feature> features, const ProviderSearch &search)
{
    QStringList ids;
    const QString key = searchKey(search.term);
    for (const QString &kind : {KINDS[1], KINDS[0], KINDS[2]}) { // sorted
        if (search.kind == SearchKind::Suggestion && startWords(sortedWords(kind), words(key)))
            ids.append(QStringLiteral("category:") + kind);
    }
    std::stable_sort(features.begin(), features.end(), [](auto &a, auto &b) { return a.weight > b.weight; });
    const auto count = [&](const QStringList &wanted, bool inNames) {
        return std::count_if(features.begin(), features.end(),
                             [&](const Feature &feature) { return isFound(feature, search.kind, wanted, inNames); });
    };
    QStringList wanted = words(key);
    const bool inNames = count(wanted, true) > 0;
    // No term here has more than two words. If no place has both, the rarer one is sufficient.
    if (wanted.size() > 1 && !inNames && count(wanted, false) == 0) {
        const auto a = count(wanted.mid(0, 1), false), b = count(wanted.mid(1), false);
        wanted = b == 0 || (a > 0 && a <= b) ? wanted.mid(0, 1) : wanted.mid(1);
    }
    std::vector<std::tuple<int, double, QString, int>> ranks;
    for (std::size_t i = 0; i < features.size(); ++i) {
        const bool isByRelevance = search.order == SearchOrder::Relevance;
        const Coordinates &centre = isByRelevance ? search.centre : search.orderCentre;
        const bool isByName = search.order == SearchOrder::Name || search.order == SearchOrder::NameBackwards;
        const double distance =
            isByName || !centre.isValid() ? 0 : Utilities::calculateDistanceInMeter(features[i].position, centre);
        if (isCode(features[i], search.kind, key) || isFound(features[i], search.kind, wanted, inNames))
            ranks.emplace_back(isByRelevance && !key.isEmpty() ? tierOf(features[i], search.kind, key, wanted) : 0,
                               search.order == SearchOrder::FarFirst ? -distance : distance,
                               isByName ? sortKey(features[i].name) : QString(), static_cast<int>(i));
    }
    std::stable_sort(ranks.begin(), ranks.end(), [&search](auto a, auto b) {
        if (search.order == SearchOrder::NameBackwards)
            std::swap(std::get<2>(a), std::get<2>(b));
        return a < b;
    });
    for (const auto &rank : ranks)
        ids.append(features[static_cast<std::size_t>(std::get<3>(rank))].id);
    return ids;
}

QStringList idsOf(const std::vector<FoundPlace> &places)
{
    QStringList ids;
    for (const FoundPlace &place : places)
        ids.append(place->auxiliaryData(0).externalId());
    return ids;
}

QByteArray feature(const char *id, const char *name, const char *more = "")
{
    return QByteArray(R"({"type":"Feature","id":")") + id
           + R"(","geometry":{"type":"Point","coordinates":[8,47]},"properties":{"name":")" + name + "\"" + more + "}}";
}

/// A gazetteer of some features.
struct Towns
{
    explicit Towns(const QByteArrayList &features, const QByteArray &behind = "]}")
    {
        write(features, behind);
        open();
    }
    void write(const QByteArrayList &features, const QByteArray &behind = "]}") const
    {
        files::write(file, R"({"type":"FeatureCollection","features":[)" + features.join(',') + behind);
    }
    void open()
    {
        made = std::make_unique<Gazetteer>(std::vector<std::string>{file.toStdString()}, index.toStdString());
    }
    QStringList find(const char *term, SearchKind kind = SearchKind::Name)
    {
        ProviderSearch search;
        search.term = QString::fromUtf8(term);
        search.kind = kind;
        search.count = 20;
        return idsOf(made->search(search).places);
    }

    QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("features.geojson"));
    const QString index = folder.filePath(QStringLiteral("index"));
    std::unique_ptr<Gazetteer> made;
};

struct Index
{
    QTemporaryDir folder;
    QFile file{folder.filePath(QStringLiteral("features.geojson"))};
    std::vector<Feature> features = makeFeatures(file);
    Gazetteer gazetteer{{file.fileName().toStdString()}, folder.filePath(QStringLiteral("index")).toStdString()};
};

} // namespace

TEST(Gazetteer, ReturnsTheSamePagesAsAFullRankingInEveryOrder)
{
    Index index;
    for (const SearchKind kind : {SearchKind::Address, SearchKind::Name, SearchKind::Category,
                                  SearchKind::CategoryOrName, SearchKind::Suggestion}) {
        for (const char *term : {"", "s", "san", "san airport", "ZÜRICH", "zurich-station", "santa land", "cafe"}) {
            for (int variant = 0; variant < 15; ++variant) {
                ProviderSearch search;
                search.kind = kind;
                search.term = QString::fromUtf8(term);
                search.order = static_cast<SearchOrder>(variant / 3);
                search.centre = search.orderCentre = CENTRES[variant % 3];
                const QStringList all = search.term.isEmpty() && kind == SearchKind::Suggestion
                                            ? QStringList()
                                            : rankAll(index.features, search);
                for (const auto &[position, count] : {std::pair(0, 7), std::pair(5, 150), std::pair(1150, 100)}) {
                    search.position = position;
                    search.count = count;
                    const ProviderAnswer answer = index.gazetteer.search(search);
                    EXPECT_EQ(idsOf(answer.places), all.mid(position, count))
                        << int(kind) << " '" << term << "' " << variant << " " << position;
                    EXPECT_EQ(answer.hasMore, position + count < all.size());
                }
            }
        }
    }
}

TEST(Gazetteer, ReturnsTheNearestPlaceOfACategoryAndTheNamedPlace)
{
    Index index;
    ProviderSearch nearest;
    for (const Coordinates &centre : CENTRES) {
        nearest.centre = centre;
        for (const QString &kind : KINDS) {
            std::vector<Feature> same = index.features;
            same.erase(std::remove_if(same.begin(), same.end(), [&](auto &f) { return f.kind != kind; }), same.end());
            EXPECT_EQ(
                idsOf(index.gazetteer.resolve(QStringLiteral("category:") + kind, centre, Deadline::max()).places),
                QStringList(rankAll(same, nearest)[0]));
        }
    }
    for (const Feature &feature : {index.features[1], index.features[7]}) {
        for (const double north : {0.004, 0.005}) {
            const Coordinates position(feature.position.latitude() + north, feature.position.longitude());
            const auto found = index.gazetteer.auxiliaryData({{}, feature.name, position}, Deadline::max()).records;
            EXPECT_EQ(found.size(), north < 0.0045 ? 1 : 0) << "445 metres, 556 metres";
        }
    }
}

TEST(Gazetteer, StopsAtItsDeadlineInEveryPlan)
{
    Index index;
    ProviderSearch search;
    search.count = 1;
    ASSERT_EQ(index.gazetteer.search(search).places.size(), 1U) << "waits for the index";
    search.position = FEATURES;
    search.deadline = Clock::now();
    for (const char *term : {"", "s"}) {
        for (int variant = 0; variant < 15; ++variant) {
            search.term = QLatin1String(term);
            search.order = static_cast<SearchOrder>(variant / 3);
            search.centre = search.orderCentre = CENTRES[variant % 3];
            EXPECT_EQ(index.gazetteer.search(search).code, orix_places_protocol::TookTooLong) << term << variant;
        }
    }
}

TEST(Gazetteer, FindsTheIntendedPlace)
{
    constexpr char DATA[] = "service/data/intended.txt";
    QByteArrayList features;
    for (const auto &[line] : golden::rows<1>(DATA, "features"))
        features.append(QByteArray::fromStdString(line));
    Towns towns(features);
    for (const auto &[term, ids] : golden::rows<2>(DATA, "searches"))
        EXPECT_EQ(towns.find(term.c_str()).join(QLatin1Char(' ')).toStdString(), ids) << term;
    ProviderSearch search;
    search.count = 1;
    search.term = QStringLiteral("munich");
    EXPECT_EQ(towns.made->search(search).places.at(0)->description(), QStringLiteral("Munich"))
        << "the name by which it was found";
    for (const QString &term :
         {QString(4096, QLatin1Char('x')), QStringLiteral("\U0001F600").repeated(1000), QString(100, QChar(0xD800))}) {
        search.term = term;
        EXPECT_TRUE(towns.made->search(search).places.empty());
    }
}

TEST(Gazetteer, RebuildsItsIndexWhenItsFilesChange)
{
    Towns towns({feature("1", "One"), R"({"type":"Feature"})", feature("", "Two")}, R"(,{"type":"Fea)");
    EXPECT_EQ(towns.find(""), (QStringList{QStringLiteral("1"), QStringLiteral("features.geojson#3")}))
        << "features before the cut; without an id, the position in the file is the id";
    towns.write({feature("3", "Three")});
    EXPECT_EQ(towns.find("").size(), 2) << "until it is reloaded";
    const int generation = towns.made->generation();
    towns.made->reread();
    for (int i = 0; i < 2000 && towns.made->generation() == generation; ++i)
        QThread::msleep(10);
    EXPECT_EQ(towns.find(""), QStringList{QStringLiteral("3")});
    for (const qint64 size : {5000, 0}) {
        towns.made.reset();
        ASSERT_TRUE(QFile(towns.index).resize(size));
        towns.open();
        EXPECT_EQ(towns.find(""), QStringList{QStringLiteral("3")}) << "a damaged index is rebuilt";
    }
    towns.made.reset();
    ASSERT_TRUE(QFile::remove(towns.file));
    towns.open();
    EXPECT_EQ(towns.made->search({}).code, orix_places_protocol::ProviderFailed);
}

TEST(Gazetteer, SuggestsPlacesAndCategoriesWithTheirDetails)
{
    Towns towns({feature("zrh", "Z\u00FCrich Airport", R"(,"kind":"large_airport","iata":"ZRH","city":"Kloten")"),
                 feature("lake", "Large Lake", R"(,"kind":"water")"),
                 feature("kloten", "Kloten", R"(,"kind":"city","city":"Kloten","country":"Switzerland")")});
    EXPECT_EQ(towns.find("large", SearchKind::Suggestion).join(QLatin1Char(' ')).toStdString(),
              "category:large_airport lake");
    EXPECT_EQ(towns.find("large", SearchKind::CategorySuggestion),
              QStringList{QStringLiteral("category:large_airport")});
    EXPECT_EQ(towns.find("", SearchKind::CategorySuggestion).size(), 3);
    EXPECT_EQ(towns.find("kloten switzerland", SearchKind::Address), QStringList{QStringLiteral("kloten")});
    const struct
    {
        const char *term;
        SearchKind kind;
        const char *name;
        const char *suggested; ///< The tag of what is suggested; null for what was found.
        SearchResultCertainty::Type certainty;
    } cases[] = {
        {"zurich", SearchKind::Suggestion, "Z\u00FCrich Airport", InternalTags::SuggestionAirport, Certainty::Likely},
        {"kloten", SearchKind::Suggestion, "Kloten", InternalTags::SuggestionAddress, Certainty::Exact},
        {"lake", SearchKind::Suggestion, "Large Lake", InternalTags::SuggestionPointOfInterest, Certainty::Likely},
        {"lake", SearchKind::Name, "Large Lake", nullptr, Certainty::Likely},
        {"large", SearchKind::CategorySuggestion, "large airport", InternalTags::SuggestionCategory,
         Certainty::Unknown},
    };
    for (const auto &row : cases) {
        ProviderSearch search;
        search.term = QLatin1String(row.term);
        search.kind = row.kind;
        search.count = 1;
        const ProviderAnswer answer = towns.made->search(search);
        ASSERT_EQ(answer.places.size(), 1U) << row.term;
        const Place &place = *answer.places[0];
        EXPECT_EQ(place.name().toStdString(), row.name);
        EXPECT_EQ(place.hasTag(QLatin1String(InternalTags::Suggestion)), row.suggested != nullptr) << row.term;
        for (const char *tag : {InternalTags::SuggestionAirport, InternalTags::SuggestionAddress,
                                InternalTags::SuggestionPointOfInterest, InternalTags::SuggestionCategory})
            EXPECT_EQ(place.hasTag(QLatin1String(tag)), row.suggested == tag) << row.term << tag;
        EXPECT_EQ(PlacePrivate::privateFromPublic(&place)->certainty(), row.certainty) << row.term;
        EXPECT_EQ(place.auxiliaryData(0).provider().name(), QStringLiteral("gazetteer"));
    }
    const auto records = towns.made->auxiliaryData({QStringLiteral("zrh"), {}, {}}, Deadline::max()).records;
    ASSERT_EQ(records.size(), 1);
    EXPECT_EQ(records[0].property(QStringLiteral("iata")), QStringLiteral("ZRH"));
    EXPECT_TRUE(towns.made->auxiliaryData({{}, QStringLiteral("Kloten"), {}}, Deadline::max()).records.isEmpty());
    EXPECT_EQ(towns.made->resolve(QStringLiteral("lake"), {}, Deadline::max()).places.size(), 1U);
    EXPECT_EQ(towns.made->resolve(QStringLiteral("none"), {}, Deadline::max()).places.size(), 0U);
}
