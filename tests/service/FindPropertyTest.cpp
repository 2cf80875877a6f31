// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "find/Finder.h"
#include "find/Sources.h"
#include "Limits.h"
#include "model/InternalTags.h"
#include "places/SearchOperator.h"
#include "places/SortRule.h"
#include "places/Tags.h"
#include "places/Utilities.h"
#include "search/SearchRulePrivate.h"
#include "store/Records.h"
#include "store/Store.h"
#include "support/SamplePlace.h"

#include <gmock/gmock.h>

#include <QtCore/QRegularExpression>

#include <iostream>
#include <random>
#include <set>

using namespace placesd;
using namespace vela::platform::places;
using Kind = orix_places_protocol::SearchRuleKind;
using SortKind = orix_places_protocol::SortRuleKind;
using Field = SearchRulePrivate::Field;

namespace
{

QStringList list(const char *texts)
{
    return QString::fromUtf8(texts).split(QLatin1Char('|'));
}

const QStringList WORDS =
    list("cafe|Café|CAFÉ|ｃafé|caf|Straße|STRASSE|Zürich|zu|z||İzmir|izmir|東京|東|कि|क|한국|하|ﬁn|🍕|"
         "🥲|a🥲b|σίσυφος|Σίσυφοσ|--|\"|*|l'eau|100%|9|y\xCC\x88|ø|a|b|𝔸|b🏽a")
    << QString(QChar(0)) + QLatin1Char('x');
const QStringList TAGS = list("beach|beach|Beach|bé ach") << Tags::Favorite;
const QStringList TYPES = list("Poi|") << AuxiliaryData::TypeContact << AuxiliaryData::TypeCalendar
                                       << AuxiliaryData::TypePointOfInterest;
const QStringList OWNERS = list("|app|app|App|other");
const QStringList KEYS = list("kind|Kind|note|nöte");
const QStringList VALUES =
    list("room|Room||by the lake")
    << list("#|#v|#va|#Vä b|#🍕x|#🍕🍕 room").replaceInStrings(QStringLiteral("#"), QString(63, QLatin1Char('v')));
const std::vector<Coordinates> POSITIONS = {{0, 180},      {0, -180},      {47, 8},  {47, 8},     {47, 8.00001},
                                            {90, 0},       {90, 77},       {-90, 3}, {-90, -180}, {-47, -172},
                                            {0, 179.9999}, {0, -179.9999}, {95, 0},  {}};
const std::vector<quint64> TIMES = {0, 0, 0, 1, 5, 5, 1000, 4000000000ULL};

const std::map<int, QStringList> TEXTS = {{1, KEYS},
                                          {2, VALUES},
                                          {5, OWNERS},
                                          {6, TAGS},
                                          {7, TYPES},
                                          {11, OWNERS},
                                          {Field::RecentSearchTerms, list("||c|z|st")}};
const std::vector<int> FIELDS = {1, 2, 3, 4, 4, 4, 5, 6, 6, 7, 8, 10, 10, 11, 12, 15, 17, 18, 19, 21, 23, 24};

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
        const QVector<uint> text = (isName ? oneIn(3) ? name() : of(WORDS) : of(TEXTS.at(field))).toUcs4();
        rule.text = QString::fromUcs4(text.constData(), oneIn(3) ? below(text.size() + 1) : text.size());
        return sourceKindOf(rule) != SourceKind::None && --m_sources < 0 ? leaf(of(FIELDS)) : rule;
    }

    std::mt19937 m_random;
    int m_sources = 0;
};

std::string valuesOf(const Rule &rule)
{
    return std::to_string(rule.op) + " '" + rule.text.toStdString() + "' " + std::to_string(rule.value);
}

std::string valuesOf(const Sort &sort)
{
    return std::to_string(sort.order) + " " + std::to_string(sort.latitude) + "," + std::to_string(sort.longitude);
}

template <typename Node>
std::string textOf(const Node &node)
{
    std::string text =
        std::to_string(static_cast<int>(node.kind)) + ":" + std::to_string(node.field) + ":" + valuesOf(node);
    for (const Node &member : node.members)
        text += " [" + textOf(member) + "]";
    return text;
}

/// Gives some of its places for a term, or all. Some are stored.
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

// ------------------------------------------------------------------------------------------------- finding, naively

/// What a function makes of a text; one function for each type.
template <typename Value>
const Value &cached(const QString &text, Value (*make)(const QString &))
{
    static QHash<QString, Value> known;
    const auto found = known.constFind(text);
    return found != known.constEnd() ? *found : *known.insert(text, make(text));
}

const QString &folded(const QString &text)
{
    return cached(text, searchKey);
}

QStringList splitWords(const QString &text)
{
    static const QRegularExpression between(
        QStringLiteral("[^\\p{L}\\p{N}\\p{M}\\p{Co}\\p{So}\\x{1F3FB}-\\x{1F3FF}]+"));
    return text.split(between, Qt::SkipEmptyParts);
}

bool passes(const QString &text, int op, const QString &term)
{
    const QByteArray a = text.toUtf8();
    const QByteArray b = term.toUtf8();
    const QStringList &there = cached(text, splitWords);
    const QStringList &wanted = cached(term, splitWords);
    const auto startsAWord = [&](const QString &start) {
        return std::any_of(there.begin(), there.end(), [&](const QString &word) { return word.startsWith(start); });
    };
    const bool results[] = {
        a == b,          a != b,
        a >= b,          a <= b,
        a.startsWith(b), wanted.isEmpty() ? a.contains(b) : std::all_of(wanted.begin(), wanted.end(), startsAWord),
        a.endsWith(b)};
    return results[op - SearchOperator::Equals];
}

struct Subject
{
    FoundPlace given;
    FoundPlace seen; ///< The same, without ids and uses where it is not stored.
    bool isStored = true;
    qint64 number = 0; ///< The id, or where it came among those that are not stored.
    int batch = 0;     ///< Of the providers.
    std::set<const Rule *> foundBy = {};

    const PlacePrivate &data() const { return *PlacePrivate::privateFromPublic(seen.get()); }
};

bool hasProperty(const PlacePrivate &place, const Rule *key, const Rule *value, const QStringList &types = TYPES)
{
    const auto isFound = [&](const QMap<QString, QString> &properties, const QString &own) {
        return (!key || passes(folded(own), key->op, folded(key->text)))
               && (!value || passes(folded(properties[own]), value->op, folded(value->text)));
    };
    return std::any_of(place.auxiliaryData().begin(), place.auxiliaryData().end(), [&](const AuxiliaryData &record) {
        const QMap<QString, QString> all = record.properties();
        return types.contains(record.type())
               && std::any_of(all.keyBegin(), all.keyEnd(), [&](const QString &own) { return isFound(all, own); });
    });
}

Rule equals(const char *text)
{
    Rule rule;
    rule.op = SearchOperator::Equals;
    rule.text = QLatin1String(text);
    return rule;
}

template <typename Node, typename Take>
void eachLeaf(const Node &node, const Take &take)
{
    if (node.members.empty())
        take(node);
    for (const Node &member : node.members)
        eachLeaf(member, take);
}

/// What is stored, and where other places come from.
struct Model
{
    std::map<qint64, FoundPlace> stored;
    std::vector<FoundPlace> terms; ///< Newest first.
    const Guide *guide = nullptr;
};

/// A look at every place for one query.
class Look
{
public:
    Look(const Model &model, const Query &query, bool external);
    std::vector<FoundPlace> find();

private:
    static QString originOf(const AuxiliaryData &record)
    {
        return record.externalId().isEmpty() ? QString() : record.type() + QLatin1Char(' ') + record.externalId();
    }
    void addGiven(const Rule &leaf, const FoundPlace &place, int batch);
    bool isGiven(const Rule &leaf, const Subject &subject) const
    {
        return subject.foundBy.count(&leaf) > 0 && (subject.batch == m_batch || !providerSearchOf(leaf));
    }
    bool isGivenByAny(const Rule &rule, const Subject &subject) const
    {
        return isGiven(rule, subject) || std::any_of(rule.members.begin(), rule.members.end(), [&](const Rule &member) {
                   return isGivenByAny(member, subject);
               });
    }
    bool holds(const Rule &rule, const Subject &subject) const
    {
        const auto &members = rule.members;
        const auto isHeld = [&](const Rule &member) { return holds(member, subject); };
        if (rule.kind == Kind::Or)
            return std::any_of(members.begin(), members.end(), isHeld);
        if (rule.kind == Kind::And && members.size() == 2 && members[0].field == Field::AuxiliaryKey
            && members[1].field == Field::AuxiliaryValue)
            return hasProperty(subject.data(), &members[0], &members[1]);
        return rule.kind == Kind::UnaryString ? holdsLeaf(rule, subject)
                                              : std::all_of(members.begin(), members.end(), isHeld);
    }
    bool holdsLeaf(const Rule &rule, const Subject &subject) const
    {
        const PlacePrivate &data = subject.data();
        static const Rule kind = equals("kind");
        static const Rule room = equals(ROOM);
        const quint64 used = data.lastUsedTime();
        const quint64 time = static_cast<unsigned>(rule.value);
        const bool uses[] = {used == time, used != time, used >= time, used <= time};
        const bool isOwn = subject.isStored && !m_external;
        const bool isNamed = passes(folded(data.name()), SearchOperator::Contains, folded(rule.text));
        const auto isText = [&](const QString &text) { return passes(text, rule.op, rule.text); };
        const auto isType = [&](const AuxiliaryData &record) { return isText(record.type()); };
        const bool isNot = rule.op == SearchOperator::NotEqual;
        switch (rule.field) {
        case Field::AuxiliaryKey:
            return hasProperty(data, &rule, nullptr);
        case Field::AuxiliaryValue:
            return hasProperty(data, nullptr, &rule);
        case Field::LastUsedTime:
            return uses[rule.op - SearchOperator::Equals];
        case Field::Name:
            return passes(folded(data.name()), rule.op, folded(rule.text));
        case Field::Owner:
        case Field::MyPlaces:
            return isText(data.owner());
        case Field::Tag:
            return isNot ? !data.hasTag(rule.text) : std::any_of(data.tags().begin(), data.tags().end(), isText);
        case Field::Type:
            return isNot ? !data.hasAuxiliaryData(rule.text)
                         : std::any_of(data.auxiliaryData().begin(), data.auxiliaryData().end(), isType);
        case Field::RecentlyPicked:
            return isOwn && data.isInRecentBucket();
        case Field::ListFavorite:
        case Field::ExcludeFavorites:
            return (subject.isStored && data.hasTag(Tags::Favorite)) == (rule.field == Field::ListFavorite);
        case Field::NonContact:
            return !data.hasAuxiliaryData(AuxiliaryData::TypeContact);
        case Field::ContactQuery:
            return isOwn && isNamed && data.hasAuxiliaryData(AuxiliaryData::TypeContact);
        case Field::MeetingRoom:
            return isOwn && isNamed
                   && hasProperty(data, &kind, &room, {AuxiliaryData::TypeContact, AuxiliaryData::TypeCalendar});
        default:
            return isGiven(rule, subject);
        }
    }
    bool isFoundBy(const Rule &search, const Subject &subject) const
    {
        const auto isFound = [&](const Rule &member) { return isFoundBy(member, subject); };
        if (joinsSearches(search))
            return std::any_of(search.members.begin(), search.members.end(), isFound);
        return (subject.isStored ? !m_external || subject.data().isExplicitlySaved() : isGivenByAny(search, subject))
               && holds(search, subject);
    }

    const Query &m_query;
    const bool m_external;
    int m_batch = 0;
    std::vector<Subject> m_subjects;
    QHash<QString, std::size_t> m_known; ///< Positions among the subjects, by what a place is known by at its source.
};

Look::Look(const Model &model, const Query &query, bool external)
    : m_query(query)
    , m_external(external)
{
    for (const auto &[id, place] : model.stored) {
        for (const AuxiliaryData &record : PlacePrivate::privateFromPublic(place.get())->auxiliaryData()) {
            if (!m_known.contains(originOf(record)))
                m_known.insert(originOf(record), m_subjects.size());
        }
        m_subjects.push_back({place, place, true, id});
    }
    m_known.remove(QString());
    std::vector<const Rule *> asking;
    eachLeaf(query.rule, [&](const Rule &leaf) {
        if (providerSearchOf(leaf))
            asking.push_back(&leaf);
        for (const FoundPlace &term : model.terms) {
            if (leaf.field == Field::RecentSearchTerms && !external
                && folded(term->name()).startsWith(folded(leaf.text)))
                addGiven(leaf, term, 0);
        }
    });
    // Batches follow one another when nothing has to stand behind all of them.
    const bool isChain = joinsSearches(query.rule) && query.rule.kind == Kind::And;
    const bool hasBatches = asking.size() == 1 && (!isChain || asksProviders(query.rule.members.back()));
    for (const Rule *leaf : asking) {
        int count = 0;
        for (const FoundPlace &place : model.guide ? model.guide->results(leaf->text) : std::vector<FoundPlace>())
            addGiven(*leaf, place, hasBatches ? count++ / limits::PROVIDER_BATCH : 0);
    }
}

void Look::addGiven(const Rule &leaf, const FoundPlace &place, int batch)
{
    const std::shared_ptr<Place> seen = copyOf(*place);
    PlacePrivate &data = *PlacePrivate::privateFromPublic(seen.get());
    data.clearPersistedStates();
    data.setOwner(QString());
    data.setLastUsedTime(0);
    QString origin = data.hasAuxiliaryData() ? originOf(data.auxiliaryData(0)) : data.name();
    if (data.hasTag(QLatin1String(InternalTags::Suggestion)))
        origin.prepend(QLatin1Char('?'));
    if (!m_known.contains(origin)) {
        m_known.insert(origin, m_subjects.size());
        m_subjects.push_back({place, seen, false, static_cast<qint64>(m_subjects.size())});
    }
    Subject &subject = m_subjects[m_known[origin]];
    subject.foundBy.insert(&leaf);
    subject.batch = batch;
}

bool sorts(const Sort &sort)
{
    return sort.kind == SortKind::Simple
           || (sort.kind == SortKind::Distance && Coordinates(sort.latitude, sort.longitude).isValid());
}

/// A number or text to sort by; what has none comes last.
std::optional<std::pair<double, QByteArray>> valueOf(const Sort &sort, const PlacePrivate &place)
{
    const Coordinates position = place.primaryCoordinates();
    if (sort.kind == SortKind::Distance && !position.isValid())
        return {};
    if (sort.kind == SortKind::Distance)
        return {{Utilities::calculateDistanceInMeter(position, {sort.latitude, sort.longitude}), {}}};
    if (sort.field == SortField::Name)
        return {{0, sortKey(place.name()).toUtf8()}};
    const auto count = static_cast<quint64>(place.usageCount());
    const quint64 numbers[] = {
        (count << 40) + place.lastUsedTime(), 0, place.lastUsedTime(), place.createdTime(), place.updatedTime(), count};
    return {{static_cast<double>(numbers[sort.field]), {}}};
}

/// The last criterion first, each time keeping what is equal as it was.
void sortBy(const Sort &sort, std::vector<const Subject *> &subjects)
{
    for (auto member = sort.members.rbegin(); member != sort.members.rend(); ++member)
        sortBy(*member, subjects);
    if (!sorts(sort))
        return;
    std::map<const Subject *, std::optional<std::pair<double, QByteArray>>> values;
    for (const Subject *subject : subjects)
        values[subject] = valueOf(sort, subject->data());
    std::stable_sort(subjects.begin(), subjects.end(), [&](const Subject *a, const Subject *b) {
        if (!values[a] || !values[b])
            return values[a].has_value() && !values[b];
        return sort.order == SortOrder::Descending ? values[b] < values[a] : values[a] < values[b];
    });
}

std::vector<FoundPlace> Look::find()
{
    const bool isChain = joinsSearches(m_query.rule) && m_query.rule.kind == Kind::And;
    std::vector<const Rule *> searches;
    for (const Rule &member : m_query.rule.members)
        searches.push_back(&member);
    if (!isChain)
        searches = {&m_query.rule};
    const Sort *first = nullptr;
    eachLeaf(m_query.sort, [&first](const Sort &sort) { first = !first && sorts(sort) ? &sort : first; });
    const bool isDown = (first ? first : &m_query.sort)->order == SortOrder::Descending;
    const auto isBefore = [isDown](const Subject *a, const Subject *b) {
        if (a->isStored != b->isStored)
            return a->isStored;
        return a->isStored && isDown ? b->number < a->number : a->number < b->number;
    };

    std::vector<FoundPlace> found;
    std::set<const Subject *> known;
    for (; m_batch < 3; ++m_batch) {
        for (const Rule *search : searches) {
            std::vector<const Subject *> hits;
            for (const Subject &subject : m_subjects) {
                if (isFoundBy(*search, subject) && known.insert(&subject).second)
                    hits.push_back(&subject);
            }
            std::sort(hits.begin(), hits.end(), isBefore);
            sortBy(m_query.sort, hits);
            for (const Subject *subject : hits)
                found.push_back(subject->given);
        }
    }
    return found;
}

void change(Store &store, Model &model, Chance &chance, int size)
{
    for (int i = 0; i < size + size / 5; ++i) {
        const bool isNew = i < size;
        FoundPlace *const any = isNew ? nullptr : &model.stored[chance.of(model.stored).first];
        const std::shared_ptr<Place> place = chance.place(isNew ? PlaceId::UNDEFINED_PERSISTED_ID : (*any)->id());
        if (isNew)
            store.insert(*place);
        else
            store.update(*place, **any);
        model.stored[place->id()] = place;
        if (!isNew && chance.oneIn(2)) {
            store.remove(place->id());
            model.stored.erase(place->id());
        }
    }
    for (int i = chance.below(9); i > 0; --i) {
        auto term = std::make_shared<Place>();
        term->setName(chance.name() + QString::number(i));
        term->addTag(QLatin1String(InternalTags::RecentSearchTerm));
        term->addTag(QStringLiteral("_search-term_"));
        model.terms.insert(model.terms.begin(), term);
        store.rememberTerm(term->name());
    }
}

/// Hashes of records, with names to be read.
std::vector<std::string> namesOf(const std::vector<std::string> &records)
{
    std::vector<std::string> names;
    for (const std::string &record : records)
        names.push_back(decodePlace(record)->name().toStdString() + " "
                        + std::to_string(std::hash<std::string>()(record)));
    return names;
}

std::vector<std::string> namesOf(const std::vector<FoundPlace> &all, int offset, int count)
{
    std::vector<std::string> records;
    for (int i = offset; i < static_cast<int>(all.size()) && i < offset + count; ++i)
        records.push_back(fullRecordOf(*all[static_cast<std::size_t>(i)]));
    return namesOf(records);
}

Page pageOf(Store &store, const Providers &providers, const Query &query, bool external, Plan plan)
{
    Page page;
    EXPECT_EQ(Finder(store, {providers}, query, external, Deadline::max(), plan).find(page), 0);
    return page;
}

} // namespace

/// PLACES_FINDS says how many finds are compared, PLACES_SEED with which seed to begin.
TEST(AFind, GivesByEveryPlanWhatALookAtEveryPlaceGives)
{
    constexpr int SIZES[] = {300, 0, 50, 1, 200, 50, 300, 50, 200, 3300};
    const int wanted = std::max(4000, qEnvironmentVariableIntValue("PLACES_FINDS"));
    int compared = 0;
    for (int seed = qEnvironmentVariableIntValue("PLACES_SEED"); compared < wanted; ++seed) {
        Chance chance(static_cast<unsigned>(seed));
        std::timed_mutex lock;
        Store store(":memory:", lock);
        Model model;
        store.write([&] {
            change(store, model, chance, SIZES[static_cast<unsigned>(seed) % std::size(SIZES)]);
            return true;
        });
        auto guide = std::make_unique<Guide>(chance);
        std::vector<std::unique_ptr<PlaceProvider>> guides;
        if (chance.oneIn(2)) {
            model.guide = guide.get();
            guides.push_back(std::move(guide));
        }
        const Providers providers(std::move(guides));
        for (int i = 0; i < 50 && compared < wanted; ++i) {
            Query query;
            query.rule = chance.rule();
            query.sort = chance.sort();
            const bool external = chance.oneIn(4);
            const std::vector<FoundPlace> all = Look(model, query, external).find();
            const auto size = static_cast<int>(all.size());
            query.count = chance.below(chance.oneIn(5) ? size + 2 : 12);
            query.offset = chance.oneIn(2) ? 0 : chance.below(size + 3);
            SCOPED_TRACE("PLACES_SEED=" + std::to_string(seed) + ", find " + std::to_string(i) + ": "
                         + std::to_string(query.count) + " from " + std::to_string(query.offset)
                         + (external ? ", external" : "") + "\n" + textOf(query.rule) + "\n" + textOf(query.sort));
            for (const Plan plan : {Plan::Best, Plan::ByCondition, Plan::ByOrder}) {
                Query next = query;
                const Page page = pageOf(store, providers, next, external, plan);
                const auto end = static_cast<int>(page.records.size()) + query.offset;
                ASSERT_EQ(namesOf(page.records), namesOf(all, query.offset, query.count)) << static_cast<int>(plan);
                ASSERT_EQ(page.hasMore, size > query.offset + query.count);
                next.providerPrimaryIndex = page.next.batch;
                next.providerSecondaryIndex = page.next.position;
                if (page.next.batch >= 0) {
                    ASSERT_EQ(namesOf(pageOf(store, providers, next, external, plan).records),
                              namesOf(all, end, query.count));
                }
                ++compared;
            }
            int count = -1;
            ASSERT_EQ(Finder(store, {providers}, query, external, Deadline::max()).count(count), 0);
            ASSERT_EQ(count, size);
            ++compared;
        }
    }
    std::cout << compared << " finds compared\n";
}
