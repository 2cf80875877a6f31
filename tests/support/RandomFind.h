// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "find/Sources.h"
#include "Limits.h"
#include "model/InternalTags.h"
#include "places/Tags.h"
#include "search/SearchRulePrivate.h"
#include "sources/PlaceProvider.h"
#include "support/SamplePlace.h"

#include <map>
#include <memory>
#include <random>
#include <string>
#include <vector>

/// Random places and queries with a small vocabulary, so that many values are equal, and a provider of such places.
namespace finds
{

using namespace placesd;
using namespace vela::platform::places;
using Kind = orix_places_protocol::SearchRuleKind;
using SortKind = orix_places_protocol::SortRuleKind;
using Field = SearchRulePrivate::Field;

inline QStringList list(const char *texts)
{
    return QString::fromUtf8(texts).split(QLatin1Char('|'));
}

inline const QStringList WORDS =
    list("cafe|Café|CAFÉ|ｃafé|caf|Straße|STRASSE|Zürich|zu|z||İzmir|izmir|東京|東|कि|क|한국|하|ﬁn|🍕|"
         "🥲|a🥲b|σίσυφος|Σίσυφοσ|--|\"|*|l'eau|100%|9|y\xCC\x88|ø|a|b|𝔸|b🏽a")
    << QString(QChar(0)) + QLatin1Char('x');
inline const QStringList TAGS = list("beach|beach|Beach|bé ach") << Tags::Favorite;
inline const QStringList TYPES = list("Poi|") << AuxiliaryData::TypeContact << AuxiliaryData::TypeCalendar
                                              << AuxiliaryData::TypePointOfInterest;
inline const QStringList OWNERS = list("|app|app|App|other");
inline const QStringList KEYS = list("kind|Kind|note|nöte");
inline const QStringList VALUES =
    list("room|Room||by the lake")
    << list("#|#v|#va|#Vä b|#🍕x|#🍕🍕 room").replaceInStrings(QStringLiteral("#"), QString(63, QLatin1Char('v')));
inline const std::vector<Coordinates> POSITIONS = {{0, 180},      {0, -180},      {47, 8},  {47, 8},     {47, 8.00001},
                                                   {90, 0},       {90, 77},       {-90, 3}, {-90, -180}, {-47, -172},
                                                   {0, 179.9999}, {0, -179.9999}, {95, 0},  {}};
inline const std::vector<quint64> TIMES = {0, 0, 0, 1, 5, 5, 1000, 4000000000ULL};

inline const std::map<int, QStringList> TEXTS = {{1, KEYS},
                                                 {2, VALUES},
                                                 {5, OWNERS},
                                                 {6, TAGS},
                                                 {7, TYPES},
                                                 {11, OWNERS},
                                                 {Field::RecentSearchTerms, list("||c|z|st")}};
/// Terms that no name contains: words of other texts, typing errors, and too many words.
inline const QStringList TERMS =
    list("beach|bea cafe|cfae|izmri|izmir cafx|strassse zurich|same beech|same zurich nowhere|sama|glück|zuerich");
inline const std::vector<int> FIELDS = {1, 2, 3, 4, 4, 4, 5, 6, 6, 7, 8, 10, 10, 11, 12, 15, 17, 18, 19, 21, 23, 24};

/// Random places and queries.
class Chance
{
public:
    explicit Chance(unsigned seed)
        : m_random(seed)
    {}
    int below(int count) { return static_cast<int>(m_random() % static_cast<unsigned>(count)); }
    bool oneIn(int count) { return below(count) == 0; }
    template <typename List>
    auto of(const List &values)
    {
        return *std::next(std::begin(values), below(static_cast<int>(std::size(values))));
    }

    QString name()
    {
        QStringList words;
        for (int i = below(4); i >= 0; --i)
            words.append(of(WORDS));
        return words.join(QLatin1Char(oneIn(4) ? '-' : ' '));
    }
    std::shared_ptr<Place> place(qint64 id = PlaceId::UNDEFINED_PERSISTED_ID)
    {
        auto place = std::make_shared<Place>();
        PlacePrivate &data = *PlacePrivate::privateFromPublic(place.get());
        data.setName(oneIn(3) ? QStringLiteral("same") : name());
        data.setOwner(of(OWNERS));
        data.setUsageCount(below(3));
        data.setLastUsedTime(of(TIMES));
        data.setCreatedTime(of(TIMES));
        data.setUpdatedTime(of(TIMES));
        data.setPersistenceMask(1 + below(3));
        data.setPrivate(oneIn(3));
        data.m_securityPerimeter = vela::system::SecurityPerimeter::Type(below(3));
        for (int i = below(3); i > 0; --i)
            data.addTag(of(TAGS));
        for (int i = below(3); i > 0; --i)
            data.addAuxiliaryData(record(of(TYPES), i == 1 ? QString::number(below(300)) : QString()));
        for (int i = below(2); i >= 0; --i) {
            data.addLocation(Location());
            const Coordinates anywhere(below(181) - 90, below(361) - 180);
            data.m_locations.last().setCoordinates(oneIn(3) ? anywhere : of(POSITIONS));
        }
        data.setId(id);
        return place;
    }
    AuxiliaryData record(const QString &type, const QString &externalId)
    {
        AuxiliaryData record(type);
        for (int i = below(3); i > 0; --i)
            record.addProperty(of(KEYS), of(VALUES));
        record.setExternalId(externalId);
        AuxiliaryDataPrivate::fromPublic(record)->setProvider(sample::provider());
        return record;
    }

    Rule rule()
    {
        m_sources = static_cast<int>(limits::RULE_SOURCES);
        const auto search = [this] { return connective(Kind::Disjoint, 1, [this] { return tree(2); }); };
        return oneIn(3) ? search() : connective(of(std::vector{Kind::And, Kind::Or}), below(4), search);
    }
    Sort sort(int depth = 2)
    {
        Sort sort;
        sort.kind =
            of(std::vector{SortKind::Simple, SortKind::Distance, depth > 0 ? SortKind::Combined : SortKind::Simple,
                           SortKind::Simple, SortKind::Abstract});
        sort.order = 1 + below(2);
        sort.field = below(6);
        sort.latitude = of(POSITIONS).latitude();
        sort.longitude = of(POSITIONS).longitude();
        for (int i = sort.kind == SortKind::Combined ? below(4) : 0; i > 0; --i)
            sort.members.push_back(this->sort(depth - 1));
        return sort;
    }

private:
    template <typename Make>
    static Rule connective(Kind kind, int members, const Make &make)
    {
        Rule rule;
        rule.kind = kind;
        while (members-- > 0)
            rule.members.push_back(make());
        return rule;
    }
    Rule tree(int depth)
    {
        if (depth == 0 || oneIn(3))
            return leaf(of(FIELDS));
        int field = 0;
        if (oneIn(5)) // a key and a value of one property
            return connective(Kind::And, 2, [&] { return leaf(++field); });
        const auto member = [&] { return tree(depth - 1); };
        return oneIn(8) ? Rule() : connective(of(std::vector{Kind::And, Kind::Or}), below(4), member);
    }
    Rule leaf(int field)
    {
        Rule rule;
        rule.kind = Kind::UnaryString;
        rule.field = field;
        rule.op = 2 + below(field == Field::LastUsedTime ? 4 : 7);
        rule.value = static_cast<int>(static_cast<unsigned>(of(TIMES)));
        const bool isName = TEXTS.count(field) == 0 || oneIn(4);
        const QString own = oneIn(3) ? of(TERMS) : oneIn(2) ? name() : of(WORDS);
        const QVector<uint> text = (isName ? own : of(TEXTS.at(field))).toUcs4();
        rule.text = QString::fromUcs4(text.constData(), oneIn(3) ? below(text.size() + 1) : text.size());
        return sourceKindOf(rule) != SourceKind::None && --m_sources < 0 ? leaf(of(FIELDS)) : rule;
    }

    std::mt19937 m_random;
    int m_sources = 0;
};

inline std::string valuesOf(const Rule &rule)
{
    return std::to_string(rule.op) + " '" + rule.text.toStdString() + "' " + std::to_string(rule.value);
}

inline std::string valuesOf(const Sort &sort)
{
    return std::to_string(sort.order) + " " + std::to_string(sort.latitude) + "," + std::to_string(sort.longitude);
}

template <typename Node>
inline std::string textOf(const Node &node)
{
    std::string text =
        std::to_string(static_cast<int>(node.kind)) + ":" + std::to_string(node.field) + ":" + valuesOf(node);
    for (const Node &member : node.members)
        text += " [" + textOf(member) + "]";
    return text;
}

/// Returns some of its places for a term, or all. Some of them are stored.
class Guide : public PlaceProvider
{
public:
    explicit Guide(Chance &chance)
    {
        for (int i = 0; i < 250; ++i) {
            const std::shared_ptr<Place> place = chance.place();
            PlacePrivate &data = *PlacePrivate::privateFromPublic(place.get());
            data.m_auxiliaryData.prepend(chance.record(AuxiliaryData::TypePointOfInterest, QString::number(i)));
            if (i % 5 == 0)
                data.addTag(QLatin1String(InternalTags::Suggestion));
            m_places.push_back(place);
        }
    }
    std::vector<FoundPlace> results(const QString &term) const
    {
        std::vector<FoundPlace> found;
        for (uint i = 0; i < 250; ++i) {
            const uint number = (i * 7 + qHash(term)) % 250;
            if (qHash(term) % 4 == 0 || qHash(term, number) / 16 % 8 == 0)
                found.push_back(m_places[number]);
        }
        return found;
    }
    Provider description() const override { return sample::provider(); }
    ProviderAnswer search(const ProviderSearch &search) override
    {
        ProviderAnswer answer;
        answer.places = results(search.term);
        answer.places.erase(answer.places.begin(),
                            answer.places.begin()
                                + std::min<int>(search.position, static_cast<int>(answer.places.size())));
        return answer;
    }
    ProviderAnswer resolve(const QString &, const Coordinates &, Deadline) override { return {}; }
    AuxiliaryAnswer auxiliaryData(const PlaceIdentity &, Deadline) override { return {}; }

private:
    std::vector<FoundPlace> m_places;
};

} // namespace finds
