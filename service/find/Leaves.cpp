// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "find/Leaves.h"

#include "find/Candidates.h"
#include "find/FindSql.h"
#include "model/PlacePrivate.h"
#include "places/AuxiliaryData.h"
#include "places/SearchOperator.h"
#include "places/Tags.h"
#include "store/IndexEntries.h"
#include "store/SqlFunctions.h"
#include "store/Store.h"

#include <algorithm>
#include <iterator>
#include <limits>

namespace placesd
{

using vela::platform::places::AuxiliaryData;
using vela::platform::places::PlacePrivate;
using vela::platform::places::SearchOperator;
namespace sql = find_sql;
namespace Tags = vela::platform::places::Tags;

namespace
{

/// Maximum number of property keys that are looked up one by one.
constexpr std::size_t MOST_KEYS = 16;

/// The number in the first row of a statement.
qint64 numberOf(Store &store, const char *sql, const std::vector<QVariant> &bindings)
{
    const auto row = store.statements().take(sql);
    bindAll(*row, bindings);
    return row->executeStep() ? row->getColumn(0).getInt64() : 0;
}

/// Chooses a statement by the direction of the order.
const char *directed(const Order &order, const char *up, const char *down)
{
    return order.first().isDescending ? down : up;
}

std::unique_ptr<RowSource> rowsOf(Store &store, const char *sql, const std::vector<QVariant> &bindings = {})
{
    return std::make_unique<StatementSource>(store, sql, bindings);
}

/// Range of texts, or of their index keys, that an operator can match: `from` inclusive, `to` exclusive. The default
/// matches all texts: UTF-8 never contains the byte 0xFF.
struct Range
{
    QByteArray from;
    QByteArray to = QByteArrayLiteral("\xFF");
};

/// Greater than any byte that can follow the search key in an index key.
constexpr char BEHIND_KEY = KEY_END + 1;

Range rangeOf(const TextTest &test, const QByteArray &term)
{
    switch (test.op()) {
    case SearchOperator::Equals:
        return {term, term + BEHIND_KEY};
    case SearchOperator::StartsWith:
        return {term, term + '\xFF'};
    case SearchOperator::GreaterOrEqual:
        return {term};
    case SearchOperator::LessOrEqual:
        return {{}, term + BEHIND_KEY};
    default:
        return {};
    }
}

bool isRange(const TextTest &test)
{
    return test.op() == SearchOperator::Equals || test.op() == SearchOperator::StartsWith
           || test.op() == SearchOperator::GreaterOrEqual || test.op() == SearchOperator::LessOrEqual;
}

} // namespace

// ----------------------------------------------------------------------------------------------------------- names

Condition::Source WordsCondition::source(Store &store, const Order &, qint64 limit) const
{
    const qint64 length = m_term->count(limit);
    return {length > 0 ? m_term->places() : std::make_unique<IdSource>(store, std::vector<qint64>()), length};
}

/// Unknown: the index of all texts can contain entries of unreadable places that were removed.
std::optional<qint64> WordsCondition::count(Store &) const
{
    if (!m_term->test().hasWords() || !m_term->test().isOfNames())
        return {};
    return m_term->count(std::numeric_limits<qint64>::max());
}

NameCondition::NameCondition(int op, const QString &term)
    : m_test(op, searchKey(term))
{}

bool NameCondition::hasSource() const
{
    return isRange(m_test);
}

Condition::Source NameCondition::source(Store &store, const Order &, qint64 limit) const
{
    const Range names = rangeOf(m_test, QByteArray::fromStdString(m_test.term()));
    return {rowsOf(store, sql::OF_NAMES, {names.from, names.to}),
            numberOf(store, sql::COUNT_SOME_OF_NAMES, {names.from, names.to, limit})};
}

// ------------------------------------------------------------------------------------------------------------ uses

bool UseCondition::test(const PlaceRow &row) const
{
    return row.lastUsedTime() >= m_from && row.lastUsedTime() <= m_to;
}

Condition::Source UseCondition::source(Store &store, const Order &order, qint64 limit) const
{
    return {sortedSource(store, order), numberOf(store, sql::COUNT_SOME_USED_BETWEEN, {m_from, m_to, limit})};
}

bool UseCondition::hasSortedSource(const Order &order) const
{
    return order.first().by == Order::By::LastUse;
}

std::unique_ptr<RowSource> UseCondition::sortedSource(Store &store, const Order &order) const
{
    return rowsOf(store, directed(order, sql::USED_BETWEEN, sql::USED_BETWEEN_DOWN), {m_from, m_to});
}

// ---------------------------------------------------------------------------------------------------------- facets

/// Statements that list the places of a facet by name.
struct FacetCondition::ByName
{
    FacetKind kind;
    QString text;
    const char *up;
    const char *down;
};

const FacetCondition::ByName *FacetCondition::byNameOf(const FacetTest &test)
{
    static const ByName LISTS[] = {
        {FacetKind::Tag, Tags::Favorite, sql::FAVORITES, sql::FAVORITES_DOWN},
        {FacetKind::Type, AuxiliaryData::TypeContact, sql::CONTACTS, sql::CONTACTS_DOWN},
        {FacetKind::Quality, QLatin1String(ROOM), sql::ROOMS, sql::ROOMS_DOWN},
    };
    const auto found = std::find_if(std::begin(LISTS), std::end(LISTS), [&test](const ByName &list) {
        return test.kind == list.kind && test.text.op() == SearchOperator::Equals
               && test.text.term() == list.text.toStdString();
    });
    return found == std::end(LISTS) ? nullptr : found;
}

bool FacetCondition::hasSource() const
{
    return m_test.numbers->size() <= MOST_KEYS;
}

Condition::Source FacetCondition::source(Store &store, const Order &, qint64 limit) const
{
    // Reading names is cheaper than reading rows.
    if (m_byName)
        return {std::make_unique<NameSource>(store, m_byName->up), std::min(limit, *count(store))};
    std::vector<std::unique_ptr<RowSource>> sources;
    qint64 length = 0;
    for (const qint64 number : *m_test.numbers) {
        sources.push_back(rowsOf(store, sql::OF_FACET, {number}));
        length += store.facets().count(number);
    }
    if (sources.size() == 1)
        return {std::move(sources.front()), std::min(length, limit)};
    return {std::make_unique<ChainedSource>(std::move(sources)), std::min(length, limit)};
}

bool FacetCondition::hasSortedSource(const Order &order) const
{
    if (m_byName && order.first().by == Order::By::Name)
        return true;
    const bool isSingle = m_test.numbers->size() == 1;
    return order.first().by == Order::By::Relevance && hasSource() && (isSingle || order.isSortedByFirst());
}

std::unique_ptr<RowSource> FacetCondition::sortedSource(Store &store, const Order &order) const
{
    if (order.first().by == Order::By::Name)
        return std::make_unique<NameSource>(store, directed(order, m_byName->up, m_byName->down));
    std::vector<std::unique_ptr<RowSource>> sources;
    for (const qint64 number : *m_test.numbers)
        sources.push_back(rowsOf(store, directed(order, sql::OF_FACET, sql::OF_FACET_DOWN), {number}));
    if (sources.size() == 1)
        return std::move(sources.front());
    return std::make_unique<MergedSource>(std::move(sources), order);
}

std::optional<qint64> FacetCondition::count(Store &store) const
{
    if (m_test.numbers->size() > 1)
        return {};
    return m_test.numbers->empty() ? 0 : store.facets().count(m_test.numbers->front());
}

// ------------------------------------------------------------------------------------------------------ properties

PropertyCondition::PropertyCondition(PropertyTest test, std::shared_ptr<const std::vector<qint64>> keys)
    : m_test(std::move(test))
    , m_keys(std::move(keys))
{}

bool PropertyCondition::hasSource() const
{
    return m_keys->size() <= MOST_KEYS;
}

Condition::Source PropertyCondition::source(Store &store, const Order &, qint64 limit) const
{
    Range values;
    if (m_test.value)
        values = rangeOf(*m_test.value, propertyPrefix(QString::fromStdString(m_test.value->term())).toUtf8());
    std::vector<std::unique_ptr<RowSource>> sources;
    qint64 length = 0;
    for (const qint64 key : *m_keys) {
        sources.push_back(rowsOf(store, sql::WITH_PROPERTY, {key, values.from, values.to}));
        length += numberOf(store, sql::COUNT_SOME_WITH_PROPERTY, {key, values.from, values.to, limit - length});
    }
    // A place may have several matching properties.
    return {std::make_unique<ChainedSource>(std::move(sources)), length};
}

// ---------------------------------------------------------------------------------- the recent bucket, favourites

bool BucketCondition::test(const PlaceRow &row) const
{
    return (row.persistenceMask() & PlacePrivate::InRecentBucket) != 0;
}

Condition::Source BucketCondition::source(Store &store, const Order &order, qint64 limit) const
{
    return {sortedSource(store, order), std::min(limit, *count(store))};
}

bool BucketCondition::hasSortedSource(const Order &order) const
{
    return order.first().by == Order::By::LastUse;
}

std::unique_ptr<RowSource> BucketCondition::sortedSource(Store &store, const Order &order) const
{
    return std::make_unique<NameSource>(store, directed(order, sql::IN_BUCKET, sql::IN_BUCKET_DOWN));
}

std::optional<qint64> BucketCondition::count(Store &store) const
{
    return store.placeCount(PlacePrivate::InRecentBucket);
}

// ------------------------------------------------------------------------------------------- permissions of places

bool PerimeterCondition::test(const PlaceRow &row) const
{
    return !row.isStored() || orix_places_protocol::fromSystemPerimeter(row.perimeter()) == m_perimeter;
}

OpenCondition::OpenCondition(Store &store)
    : m_isPrivate{FacetKind::Quality, TextTest(SearchOperator::Equals, QLatin1String(PRIVATE)), {}}
{
    m_isPrivate.numbers =
        std::make_shared<const std::vector<qint64>>(store.facets().find(m_isPrivate.kind, m_isPrivate.text));
}

bool OpenCondition::test(const PlaceRow &row) const
{
    return !row.isStored()
           || ((row.persistenceMask() & PlacePrivate::ExplicitlySaved) != 0 && !row.passes(m_isPrivate));
}

std::optional<qint64> OpenCondition::count(Store &store) const
{
    // Counts of private places do not depend on the persistence mask.
    if (!m_isPrivate.numbers->empty())
        return {};
    return store.placeCount(PlacePrivate::ExplicitlySaved);
}

bool OwnersCondition::test(const PlaceRow &row) const
{
    return row.isStored() && !(m_hasGuests && m_store.isGuest(row.id()));
}

// ----------------------------------------------------------------------------------------------- what sources gave

bool OwnCondition::test(const PlaceRow &row) const
{
    return row.isStored() || std::any_of(m_sources.begin(), m_sources.end(), [&](int source) {
               return m_candidates.wasFoundBy(source, row.id());
           });
}

bool FoundCondition::test(const PlaceRow &row) const
{
    return m_source == ANY ? m_candidates.wasFound(row.id()) : m_candidates.wasFoundBy(m_source, row.id());
}

Condition::Source FoundCondition::source(Store &store, const Order &, qint64 limit) const
{
    std::vector<qint64> ids = m_candidates.storedIds(m_source);
    const auto length = static_cast<qint64>(ids.size());
    return {std::make_unique<IdSource>(store, std::move(ids)), std::min(limit, length)};
}

/// A few places can be sorted in memory.
bool FoundCondition::hasSortedSource(const Order &order) const
{
    return order.isSortedByFirst() && m_candidates.storedIds(m_source).size() <= MOST_KEYS;
}

std::unique_ptr<RowSource> FoundCondition::sortedSource(Store &store, const Order &order) const
{
    IdSource rows(store, m_candidates.storedIds(m_source));
    std::vector<Order::Key> keys;
    while (const PlaceRow *row = rows.next())
        keys.push_back(order.keyOf(*row));
    std::sort(keys.begin(), keys.end(), order);
    std::vector<qint64> ids;
    ids.reserve(keys.size());
    for (const Order::Key &key : keys)
        ids.push_back(key.id);
    return std::make_unique<IdSource>(store, std::move(ids));
}

} // namespace placesd
