// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "sources/GazetteerQuestions.h"

#include "sources/GazetteerSql.h"
#include "sources/IndexRow.h"
#include "store/Nearest.h"
#include "store/SqlFunctions.h"
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

/// How well a place fits a term, best first.
enum Tier
{
    NoResult,
    SameName,
    NameStarts,
    NameHasWords,
    Fits
};

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

/// Every place, nearest or farthest first.
StatementPtr walkFrom(SQLite::Database &database, const ResultOrder &order)
{
    const Coordinates from = order.order() == SearchOrder::FarFirst ? antipodeOf(order.centre()) : order.centre();
    StatementPtr rows = select(database, sql::BY_DISTANCE);
    rows->bind(1, from.latitude());
    rows->bind(2, from.longitude());
    return rows;
}

/// A question for the places that a test finds, nearest first, or the best known where no centre is known.
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

/// The first text, by its bytes, behind all that start with this one, which is not empty. No byte of UTF-8 is 255.
std::string endOfStarts(std::string text)
{
    ++text.back();
    return text;
}

/// True when the last character of a text that is not empty belongs to a word.
bool endsInWord(std::string_view text)
{
    std::size_t last = text.size() - 1;
    while (last > 0 && isContinuation(text[last]))
        --last;
    const QString character = QString::fromUtf8(&text[last], static_cast<int>(text.size() - last));
    return character.size() == 1 && character[0].unicode() < 0x80 ? character[0].isLetterOrNumber()
                                                                  : !words(character).isEmpty();
}

/// A term, and what a search looks at for it.
class Term
{
public:
    explicit Term(const ProviderSearch &search)
        : m_kind(search.kind)
        , m_key(utf8(searchKey(search.term)))
        , m_matchExpression(matchExpression(search.term))
    {
        for (const QString &word : words(searchKey(search.term)))
            m_words.push_back(utf8(word));
    }

    [[nodiscard]] const std::string &key() const { return m_key; }
    [[nodiscard]] bool isEmpty() const { return m_words.empty(); }

    /// Expression for the full-text index that finds every result.
    [[nodiscard]] std::string matches() const
    {
        return utf8(QStringLiteral("{%1} : (%2)").arg(columns(), m_matchExpression));
    }
    /// The same for the results whose name has the words.
    [[nodiscard]] std::string nameMatches() const
    {
        return utf8(QStringLiteral("({%1} : (%2)) AND ({name} : (%2))").arg(columns(), m_matchExpression));
    }

    [[nodiscard]] bool isIn(const IndexRow &row) const
    {
        return std::all_of(m_words.begin(), m_words.end(), [&](const std::string &word) {
            return (looksAtName() && startsAWord(row.name, word)) || (looksAtAlias() && startsAWord(row.alias, word))
                   || (looksAtKind() && startsAWord(row.kind, word))
                   || (m_kind == SearchKind::Address && startsAWord(row.address, word));
        });
    }
    [[nodiscard]] Tier tierOf(const IndexRow &row) const
    {
        if (!isIn(row))
            return NoResult;
        if (row.name == m_key)
            return SameName;
        if (startsWith(row.name, m_key))
            return NameStarts;
        const auto isInName = [&row](const std::string &word) { return startsAWord(row.name, word); };
        return std::all_of(m_words.begin(), m_words.end(), isInName) ? NameHasWords : Fits;
    }

private:
    [[nodiscard]] bool looksAtName() const { return m_kind != SearchKind::Category; }
    [[nodiscard]] bool looksAtAlias() const { return looksAtName() && m_kind != SearchKind::Address; }
    [[nodiscard]] bool looksAtKind() const
    {
        return m_kind == SearchKind::Category || m_kind == SearchKind::CategoryOrName;
    }
    /// Columns of the full-text index that a search looks at.
    [[nodiscard]] QString columns() const
    {
        QStringList columns;
        if (looksAtName())
            columns.append(QStringLiteral("name"));
        if (looksAtAlias())
            columns.append(QStringLiteral("alias"));
        if (looksAtKind())
            columns.append(QStringLiteral("kind"));
        if (m_kind == SearchKind::Address)
            columns.append(QStringLiteral("address"));
        return columns.join(QLatin1Char(' '));
    }
    static bool startsAWord(std::string_view text, std::string_view start)
    {
        for (auto at = text.find(start); at != std::string_view::npos; at = text.find(start, at + 1)) {
            if (at == 0 || !endsInWord(text.substr(0, at)))
                return true;
        }
        return false;
    }

    SearchKind m_kind;
    std::string m_key;
    QString m_matchExpression;
    std::vector<std::string> m_words;
};

/// Selects every result in an order, and maybe others.
StatementPtr walkOf(SQLite::Database &database, const Term &term, const ResultOrder &order)
{
    if (order.isByName())
        return select(database, order.order() == SearchOrder::Name ? sql::BY_NAME : sql::BY_NAME_BACKWARDS);
    if (order.isByDistance())
        return walkFrom(database, order);
    return term.isEmpty() ? select(database, sql::BY_WEIGHT) : select(database, sql::MATCHES_BY_WEIGHT, term.matches());
}

/// Selects each result of a tier, and maybe others.
StatementPtr candidatesOf(SQLite::Database &database, const Term &term, int tier)
{
    switch (tier) {
    case SameName:
        return select(database, sql::NAMED, term.key());
    case NameStarts: {
        StatementPtr rows = select(database, sql::NAMES_BETWEEN, term.key());
        rows->bind(2, endOfStarts(term.key()));
        return rows;
    }
    case NameHasWords:
        return select(database, sql::MATCHES_BY_WEIGHT, term.nameMatches());
    default:
        return select(database, sql::MATCHES_BY_WEIGHT, term.matches());
    }
}

} // namespace

TierQuestion questionOf(SQLite::Database &database, const ProviderSearch &search)
{
    const bool isByRelevance = search.order == SearchOrder::Relevance;
    const ResultOrder order(search.order, isByRelevance ? search.centre : search.orderCentre);
    const Term term(search);
    TierQuestion question{Fits, Fits, order, nullptr, walkOf(database, term, order), nullptr};
    if (!term.isEmpty())
        question.candidates = [&database, term](int tier) { return candidatesOf(database, term, tier); };
    if (isByRelevance && !term.isEmpty()) {
        question.firstTier = SameName;
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
