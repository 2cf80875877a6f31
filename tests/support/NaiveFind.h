// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "places/SearchOperator.h"
#include "places/SortRule.h"
#include "places/Utilities.h"
#include "store/IndexEntries.h"
#include "store/Records.h"
#include "support/RandomFind.h"
#include "text/TextKeys.h"
#include "text/Vocabulary.h"
#include "text/Wording.h"

#include <QtCore/QHash>
#include <QtCore/QRegularExpression>

#include <algorithm>
#include <optional>
#include <set>
#include <unordered_map>

/// The expected results of finds, by a scan of all places in memory. Deliberately independent of the service's finds.
namespace finds
{

/// The result of a function of a text, kept.
template <auto MAKE>
const auto &cached(const QString &text)
{
    static std::unordered_map<QString, decltype(MAKE(text))> known; // its references outlive an insertion
    const auto found = known.find(text);
    return found != known.end() ? found->second : known.emplace(text, MAKE(text)).first->second;
}

inline const QString &folded(const QString &text)
{
    return cached<searchKey>(text);
}

inline QStringList splitWords(const QString &text)
{
    static const QRegularExpression between(
        QStringLiteral("[^\\p{L}\\p{N}\\p{M}\\p{Co}\\p{So}\\x{1F3FB}-\\x{1F3FF}]+"));
    return text.split(between, Qt::SkipEmptyParts);
}

/// The words by which a name is found.
inline QStringList wordsOfName(const QString &name)
{
    return splitWords(indexKey(name));
}

inline bool passes(const QString &text, int op, const QString &term)
{
    const QByteArray a = text.toUtf8();
    const QByteArray b = term.toUtf8();
    const QStringList &there = cached<splitWords>(text);
    const QStringList &wanted = cached<splitWords>(term);
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
    FoundPlace seen; ///< The same place; without ids and uses when it is not stored.
    bool isStored = true;
    qint64 number = 0; ///< The id, or the position among the places that are not stored.
    int batch = 0;     ///< Of the providers.
    std::set<const Rule *> foundBy = {};
    mutable QStringList wordsOfTexts = {}; ///< Computed on first use.

    const PlacePrivate &data() const { return *PlacePrivate::privateFromPublic(seen.get()); }
    const QStringList &textWords() const
    {
        if (wordsOfTexts.isEmpty())
            wordsOfTexts = splitWords(textKeyOf(data()));
        return wordsOfTexts;
    }
};

inline bool hasProperty(const PlacePrivate &place, const Rule *key, const Rule *value, const QStringList &types = TYPES)
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

inline Rule equals(const char *text)
{
    Rule rule;
    rule.op = SearchOperator::Equals;
    rule.text = QLatin1String(text);
    return rule;
}

template <typename Node, typename Take>
inline void eachLeaf(const Node &node, const Take &take)
{
    if (node.members.empty())
        take(node);
    for (const Node &member : node.members)
        eachLeaf(member, take);
}

/// The stored places, and the sources of other places.
struct Model
{
    Vocabulary words; ///< Of all places ever stored.
    std::map<qint64, FoundPlace> stored;
    std::vector<FoundPlace> terms; ///< Newest first.
    const Guide *guide = nullptr;

    void addWords(const Place &place)
    {
        std::vector<std::string> all;
        for (const QString &word : splitWords(textKeyOf(*PlacePrivate::privateFromPublic(&place))))
            all.push_back(word.toStdString());
        words.add(std::move(all));
    }
};

inline std::vector<const Rule *> searchesOf(const Rule &rule)
{
    std::vector<const Rule *> searches;
    for (const Rule &member : rule.members)
        searches.push_back(&member);
    const bool isChain = joinsSearches(rule) && rule.kind == Kind::And;
    return isChain ? searches : std::vector<const Rule *>{&rule};
}

inline bool sorts(const Sort &sort)
{
    return sort.kind == SortKind::Simple
           || (sort.kind == SortKind::Distance && Coordinates(sort.latitude, sort.longitude).isValid());
}

/// A number or text to sort by. Places without one come last.
inline std::optional<std::pair<double, QByteArray>> valueOf(const Sort &sort, const PlacePrivate &place)
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

/// Sorts by the last criterion first, with stable sorts.
inline void sortBy(const Sort &sort, std::vector<const Subject *> &subjects)
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

/// A scan of all places for one query.
class Look
{
public:
    Look(const Model &model, const Query &query, bool external)
        : m_query(query)
        , m_external(external)
    {
        for (const auto &[id, place] : model.stored) {
            for (const AuxiliaryData &record : PlacePrivate::privateFromPublic(place.get())->auxiliaryData()) {
                if (isOpen(*PlacePrivate::privateFromPublic(place.get())) && !m_known.contains(originOf(record)))
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
        // Batches follow one another unless results have to come after all of them.
        const bool isChain = joinsSearches(query.rule) && query.rule.kind == Kind::And;
        const bool hasBatches = asking.size() == 1 && (!isChain || asksProviders(query.rule.members.back()));
        for (const Rule *leaf : asking) {
            int count = 0;
            for (const FoundPlace &place : model.guide ? model.guide->results(leaf->text) : std::vector<FoundPlace>())
                addGiven(*leaf, place, hasBatches ? count++ / limits::PROVIDER_BATCH : 0);
        }
        chooseReadings(model);
    }
    std::vector<FoundPlace> find()
    {
        const std::vector<const Rule *> searches = searchesOf(m_query.rule);
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

private:
    static QString originOf(const AuxiliaryData &record)
    {
        return record.externalId().isEmpty() ? QString() : record.type() + QLatin1Char(' ') + record.externalId();
    }
    void addGiven(const Rule &leaf, const FoundPlace &place, int batch)
    {
        const auto seen = std::make_shared<Place>();
        PlacePrivate &data = *PlacePrivate::privateFromPublic(seen.get());
        data = *PlacePrivate::privateFromPublic(place.get());
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
    bool isGiven(const Rule &leaf, const Subject &subject) const
    {
        if (m_isReading && providerSearchOf(leaf))
            return false;
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
        const auto isNamed = [&] { return hasWords(subject, rule.text); };
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
            return isByWords(rule) ? isNamed() : passes(folded(data.name()), rule.op, folded(rule.text));
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
            return isOwn && isNamed() && data.hasAuxiliaryData(AuxiliaryData::TypeContact);
        case Field::MeetingRoom:
            return isOwn && isNamed()
                   && hasProperty(data, &kind, &room, {AuxiliaryData::TypeContact, AuxiliaryData::TypeCalendar});
        default:
            return isGiven(rule, subject);
        }
    }
    bool isOpen(const PlacePrivate &data) const
    {
        return !m_external || (data.isExplicitlySaved() && !data.isPrivate());
    }
    bool isFoundBy(const Rule &search, const Subject &subject) const
    {
        const auto isFound = [&](const Rule &member) { return isFoundBy(member, subject); };
        if (joinsSearches(search))
            return std::any_of(search.members.begin(), search.members.end(), isFound);
        const PlacePrivate &data = subject.data();
        const bool isKnown = isOpen(data)
                             && (m_query.perimeter == orix_places_protocol::Perimeter::Default
                                 || int(data.securityPerimeter()) == int(m_query.perimeter));
        return (subject.isStored ? isKnown : isGivenByAny(search, subject)) && holds(search, subject);
    }

    static bool hasWords(const Subject &subject, const Reading &reading)
    {
        const QStringList &there = reading.inNames ? cached<wordsOfName>(subject.data().name()) : subject.textWords();
        const auto isThere = [&](const Spelling &spelling) {
            const QString text = QString::fromStdString(spelling.text);
            return std::any_of(there.begin(), there.end(), [&](const QString &word) {
                return spelling.isWhole ? word == text : word.startsWith(text);
            });
        };
        return std::any_of(reading.wordings.begin(), reading.wordings.end(), [&](const Wording &wording) {
            return std::all_of(wording.words().begin(), wording.words().end(), [&](const Wording::Word &word) {
                return std::any_of(word.begin(), word.end(), isThere);
            });
        });
    }
    bool hasWords(const Subject &subject, const QString &term) const
    {
        const Reading &reading = m_readings.at(term);
        return reading.wordings.front().isEmpty() ? folded(subject.data().name()).contains(folded(term))
                                                  : hasWords(subject, reading);
    }
    void read(bool inNames)
    {
        for (auto &[term, reading] : m_readings)
            reading = {{Wording::of(term)}, inNames};
    }
    /// Chooses the first reading for which a search by words has results.
    void chooseReadings(const Model &model)
    {
        eachLeaf(m_query.rule, [&](const Rule &leaf) {
            if (isByWords(leaf))
                m_readings[leaf.text];
        });
        read(true);
        m_isReading = true;
        const auto finds = [&] {
            const std::vector<const Rule *> searches = searchesOf(m_query.rule);
            return std::any_of(m_subjects.begin(), m_subjects.end(), [&](const Subject &subject) {
                const auto first = std::find_if(searches.begin(), searches.end(),
                                                [&](const Rule *search) { return isFoundBy(*search, subject); });
                return first != searches.end() && placesd::hasWords(**first);
            });
        };
        const auto frequency = [&](const Reading &reading) {
            return std::count_if(m_subjects.begin(), m_subjects.end(), [&](const Subject &subject) {
                return subject.isStored && hasWords(subject, reading);
            });
        };
        if (m_readings.size() == 1) {
            auto &[term, chosen] = *m_readings.begin();
            const auto findsBy = [&, &chosen = chosen](const Reading &reading) {
                chosen = reading;
                return finds();
            };
            chosen = chooseReading(Wording::of(term), {model.words, findsBy, frequency});
        } else if (!m_readings.empty() && !finds()) {
            read(false);
            if (!finds())
                read(true);
        }
        m_isReading = false;
    }

    const Query &m_query;
    const bool m_external;
    std::map<QString, Reading> m_readings;
    bool m_isReading = false; ///< True while a reading is chosen, without providers.
    int m_batch = 0;
    std::vector<Subject> m_subjects;
    QHash<QString, std::size_t> m_known; ///< Positions among the subjects, by the origin of a place.
};

} // namespace finds
