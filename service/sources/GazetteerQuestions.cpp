// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "sources/GazetteerQuestions.h"

#include "sources/GazetteerSql.h"
#include "sources/IndexRow.h"
#include "store/Nearest.h"
#include "store/SqlFunctions.h"
#include "text/Expansion.h"
#include "text/TextKeys.h"
#include "text/Utf8.h"

#include <algorithm>
#include <string_view>

namespace placesd
{

using vela::platform::places::Coordinates;
namespace sql = gazetteer_sql;

namespace
{

/// How well a place matches a term, best first.
enum Tier
{
    NoResult,
    SameName,
    SameOtherName, ///< A code, or another name of the place.
    NameStarts,
    TermStarts, ///< With the name; the rest of the term is the address.
    NameHasWords,
    Fits
};

/// Testing this many rows is faster than collecting the entries of a frequent word.
constexpr int FEW_PLACES = 200;

StatementPtr select(SQLite::Database &database, const char *from)
{
    return std::make_unique<SQLite::Statement>(database, std::string(sql::ROWS) + from);
}

StatementPtr select(SQLite::Database &database, const char *from, const std::string &text)
{
    StatementPtr rows = select(database, from);
    rows->bind(1, text);
    return rows;
}

/// All places, nearest or farthest first.
StatementPtr walkFrom(SQLite::Database &database, const ResultOrder &order)
{
    const Coordinates from = order.order() == SearchOrder::FarFirst ? antipodeOf(order.centre()) : order.centre();
    StatementPtr rows = select(database, sql::BY_DISTANCE);
    rows->bind(1, from.latitude());
    rows->bind(2, from.longitude());
    return rows;
}

/// Candidates for a test, nearest first; without a centre the most prominent first.
TierQuestion nearestOf(SQLite::Database &database, const Coordinates &centre,
                       const std::function<bool(const IndexRow &)> &isResult,
                       const std::function<StatementPtr(int)> &candidates)
{
    const ResultOrder order(SearchOrder::Relevance, centre);
    return {Fits,
            Fits,
            order,
            [isResult](const IndexRow &row) { return isResult(row) ? Fits : NoResult; },
            order.isByDistance() ? walkFrom(database, order) : select(database, sql::BY_WEIGHT),
            candidates};
}

/// The first text in byte order after all texts with this non-empty prefix. UTF-8 never contains the byte 255.
std::string endOfPrefix(std::string text)
{
    ++text.back();
    return text;
}

/// Number of places that match an expression, counted up to `limit`.
int64_t countMatches(SQLite::Database &database, const std::string &expression, int limit)
{
    SQLite::Statement row(database, sql::COUNT_SOME);
    row.bind(1, expression);
    row.bind(2, limit);
    row.executeStep();
    return row.getColumn(0).getInt64();
}

/// A reading of a term with its search expressions.
class Term
{
public:
    Term(const GazetteerIndex &index, const ProviderSearch &search, const Reading &reading)
        : m_kind(search.kind)
        , m_key(utf8(searchKey(search.term)))
        , m_reading(reading)
        , m_expressions(matchExpressions(reading, index.vocabulary))
    {
        if (!reading.inNames)
            m_starts = wordStarts(m_key, sql::NAMES_AT_ONCE);
        if (!m_expressions.broad.empty() && m_expressions.broad != m_expressions.exact)
            m_isBroad =
                countMatches(index.database, matchesIn(columns(), m_expressions.broad), FEW_PLACES + 1) <= FEW_PLACES;
    }

    [[nodiscard]] const std::string &key() const { return m_key; }
    [[nodiscard]] bool isEmpty() const { return m_reading.wordings.empty() || m_reading.wordings.front().isEmpty(); }

    /// Prefixes of the key that may be a name followed by an address.
    [[nodiscard]] const std::vector<std::string> &starts() const { return m_starts; }
    /// False when no place contains the words.
    [[nodiscard]] bool canMatch() const { return !m_expressions.exact.empty(); }
    /// Whether the expressions also match other places, which must be tested.
    [[nodiscard]] bool isBroad() const { return m_isBroad; }
    /// Full-text expression that matches every result, and possibly other places.
    [[nodiscard]] std::string matches() const { return matchesIn(columns(), expression()); }
    /// Full-text expression that matches exactly the places with the words in the columns of the reading, unless
    /// isBroad().
    [[nodiscard]] std::string wordMatches() const { return matchesIn(wordColumns(), expression()); }
    /// The same for results with the words in their names.
    [[nodiscard]] std::string nameMatches() const { return matchesIn("name", expression()); }

    [[nodiscard]] bool isIn(const IndexRow &row) const
    {
        const auto hasWord = [&](const Spelling &word) {
            return (looksAtName() && isInNames(row, word)) || (looksAtKind() && has(row.kind, word))
                   || (looksAtRest() && (has(row.alias, word) || has(row.address, word)));
        };
        return passes(hasWord) || isOtherNameOf(row);
    }
    [[nodiscard]] Tier tierOf(const IndexRow &row) const
    {
        if (!isIn(row))
            return NoResult;
        if (row.name == m_key)
            return SameName;
        if (isOtherNameOf(row))
            return SameOtherName;
        if (startsWith(row.name, m_key))
            return NameStarts;
        if (std::find(m_starts.begin(), m_starts.end(), row.name) != m_starts.end())
            return TermStarts;
        return passes([&row](const Spelling &word) { return isInNames(row, word); }) ? NameHasWords : Fits;
    }

    /// The last tier that can have results.
    [[nodiscard]] Tier lastTier() const { return m_reading.inNames && !looksAtKind() ? NameHasWords : Fits; }

private:
    [[nodiscard]] bool looksAtName() const { return m_kind != SearchKind::Category; }
    [[nodiscard]] bool looksAtKind() const
    {
        return m_kind == SearchKind::Category || m_kind == SearchKind::CategoryOrName || !m_reading.inNames;
    }
    [[nodiscard]] bool looksAtRest() const { return m_kind != SearchKind::Category && !m_reading.inNames; }
    [[nodiscard]] const std::string &expression() const
    {
        return m_isBroad ? m_expressions.broad : m_expressions.exact;
    }
    /// A phrase without words matches nothing.
    static std::string matchesIn(const std::string &columns, const std::string &expression)
    {
        return "{" + columns + "} : (" + (expression.empty() ? "\"\"" : expression) + ")";
    }
    /// Columns of the full-text index in which the words are searched.
    [[nodiscard]] std::string wordColumns() const
    {
        return std::string(looksAtName() ? "name " : "") + (looksAtKind() ? "kind " : "")
               + (looksAtRest() ? "alias address " : "");
    }
    /// Columns with results: an alias equal to the term counts too.
    [[nodiscard]] std::string columns() const { return wordColumns() + (looksAtName() ? "alias" : ""); }
    template <typename HasWord>
    [[nodiscard]] bool passes(const HasWord &hasWord) const
    {
        return std::any_of(m_reading.wordings.begin(), m_reading.wordings.end(),
                           [&hasWord](const Wording &wording) { return wording.passes(hasWord); });
    }
    static bool has(std::string_view key, const Spelling &word) { return hasWord(key, word.text, word.isWhole); }
    [[nodiscard]] bool isOtherNameOf(const IndexRow &row) const
    {
        return looksAtName() && !m_key.empty() && (isTextIn(row.alias, m_key) || isTextIn(row.otherNames, m_key));
    }
    static bool isInNames(const IndexRow &row, const Spelling &word)
    {
        return has(row.name, word) || has(row.otherNames, word);
    }

    SearchKind m_kind;
    std::string m_key;
    Reading m_reading;
    std::vector<std::string> m_starts; ///< Empty when names alone contain all words.
    MatchExpressions m_expressions;
    bool m_isBroad = false;
};

/// Selects all results in an order, and possibly other places.
StatementPtr walkOf(SQLite::Database &database, const Term &term, const ResultOrder &order)
{
    if (order.isByName())
        return select(database, order.order() == SearchOrder::Name ? sql::BY_NAME : sql::BY_NAME_BACKWARDS);
    if (order.isByDistance())
        return walkFrom(database, order);
    return term.isEmpty() ? select(database, sql::BY_WEIGHT) : select(database, sql::MATCHES_BY_WEIGHT, term.matches());
}

/// Selects all results of a tier, and possibly other places.
StatementPtr candidatesOf(SQLite::Database &database, const Term &term, int tier)
{
    switch (tier) {
    case SameName:
        return select(database, sql::NAMED, term.key());
    case SameOtherName:
        return select(database, sql::OTHERWISE_NAMED, term.key());
    case TermStarts: {
        StatementPtr rows = select(database, sql::NAMED_ONE_OF);
        for (std::size_t i = 0; i < term.starts().size(); ++i)
            rows->bind(static_cast<int>(i) + 1, term.starts()[i]);
        return rows;
    }
    case NameStarts: {
        StatementPtr rows = select(database, sql::NAMES_BETWEEN, term.key());
        rows->bind(2, endOfPrefix(term.key()));
        return rows;
    }
    case NameHasWords:
        return select(database, sql::MATCHES_BY_WEIGHT, term.nameMatches());
    default:
        return select(database, sql::MATCHES_BY_WEIGHT, term.matches());
    }
}

} // namespace

int64_t countOf(const GazetteerIndex &index, const ProviderSearch &search, const Reading &reading, int limit)
{
    const Term term(index, search, reading);
    if (!term.canMatch())
        return 0;
    if (!term.isBroad())
        return countMatches(index.database, term.wordMatches(), limit);
    const StatementPtr rows = select(index.database, sql::MATCHES_BY_WEIGHT, term.matches());
    int64_t count = 0;
    while (count < limit && rows->executeStep())
        count += term.isIn(IndexRow(*rows)) ? 1 : 0;
    return count;
}

TierQuestion questionOf(const GazetteerIndex &index, const ProviderSearch &search, const Reading &reading)
{
    SQLite::Database &database = index.database;
    const bool isByRelevance = search.order == SearchOrder::Relevance;
    const ResultOrder order(search.order, isByRelevance ? search.centre : search.orderCentre);
    const Term term(index, search, reading);
    TierQuestion question{Fits, Fits, order, nullptr, walkOf(database, term, order), nullptr};
    if (!term.isEmpty())
        question.candidates = [&database, term](int tier) { return candidatesOf(database, term, tier); };
    if (isByRelevance && !term.isEmpty()) {
        question.firstTier = SameName;
        question.lastTier = term.lastTier();
        question.tierOf = [term](const IndexRow &row) { return term.tierOf(row); };
    } else {
        question.tierOf = [term](const IndexRow &row) { return term.isIn(row) ? Fits : NoResult; };
    }
    return question;
}

TierQuestion questionOfKind(SQLite::Database &database, const QString &kind, const Coordinates &centre)
{
    SQLite::Statement category(database, sql::SELECT_CATEGORY);
    category.bind(1, utf8(kind));
    const int64_t id = category.executeStep() ? category.getColumn(0).getInt64() : 0;
    const auto candidates = [&database, id](int /*tier*/) {
        StatementPtr rows = select(database, sql::OF_CATEGORY);
        rows->bind(1, id);
        return rows;
    };
    return nearestOf(
        database, centre, [id](const IndexRow &row) { return row.category == id; }, candidates);
}

TierQuestion questionOfName(SQLite::Database &database, const QString &name, const Coordinates &centre)
{
    const std::string key = utf8(searchKey(name));
    const auto candidates = [&database, key](int /*tier*/) { return select(database, sql::NAMED, key); };
    return nearestOf(
        database, centre, [key](const IndexRow &row) { return row.name == key; }, candidates);
}

} // namespace placesd
