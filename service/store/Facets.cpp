// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "store/Facets.h"

#include "places/SearchOperator.h"
#include "store/Sql.h"
#include "store/SqlFunctions.h"

#include <algorithm>
#include <limits>

namespace placesd
{

using vela::platform::places::SearchOperator;

namespace
{

constexpr unsigned int BITS = 7;
constexpr unsigned int MORE = 1U << BITS;
constexpr unsigned int LONGEST = 63;

/// A count of places, bounded: a restored file may contain any number.
qint64 bounded(const SQLite::Column &count)
{
    constexpr int64_t MOST = std::numeric_limits<int>::max();
    return std::clamp(count.getInt64(), int64_t{0}, MOST);
}

/// Reads the next number; false at the end and for an invalid number.
bool takeNumber(std::string_view packed, std::size_t &position, qint64 &number)
{
    number = 0;
    for (unsigned int shift = 0; shift < LONGEST && position < packed.size(); shift += BITS) {
        const auto byte = static_cast<unsigned char>(packed[position++]);
        number |= static_cast<qint64>(byte & (MORE - 1)) << shift;
        if ((byte & MORE) == 0)
            return true;
    }
    return false;
}

} // namespace

std::string FacetNumbers::pack(std::vector<qint64> numbers)
{
    std::sort(numbers.begin(), numbers.end());
    std::string packed;
    for (const qint64 number : numbers) {
        auto rest = static_cast<quint64>(number);
        for (; rest >= MORE; rest >>= BITS)
            packed.push_back(static_cast<char>((rest & (MORE - 1)) | MORE));
        packed.push_back(static_cast<char>(rest));
    }
    return packed;
}

std::vector<qint64> FacetNumbers::unpack(std::string_view packed)
{
    std::vector<qint64> numbers;
    std::size_t position = 0;
    for (qint64 number = 0; takeNumber(packed, position, number);)
        numbers.push_back(number);
    return numbers;
}

bool FacetNumbers::containAny(std::string_view packed, const std::vector<qint64> &numbers)
{
    std::size_t position = 0;
    for (qint64 number = 0; takeNumber(packed, position, number);) {
        if (std::binary_search(numbers.begin(), numbers.end(), number))
            return true;
    }
    return false;
}

qint64 Facets::add(const Facet &facet)
{
    const auto row = m_statements.take(sql::ADD_FACET);
    bindEach(*row, static_cast<int>(facet.kind), facet.text);
    row->executeStep();
    return row->getColumn(0).getInt64();
}

void Facets::release(qint64 number)
{
    for (const char *sql : {sql::RELEASE_FACET, sql::DELETE_UNUSED_FACET}) {
        const auto row = m_statements.take(sql);
        bindEach(*row, number);
        row->exec();
    }
}

std::vector<qint64> Facets::find(FacetKind kind, const TextTest &test)
{
    std::vector<qint64> numbers;
    const bool isEqual = test.op() == SearchOperator::Equals;
    const auto row = m_statements.take(isEqual ? sql::SELECT_FACET : sql::SELECT_FACETS);
    row->bind(1, static_cast<int>(kind));
    if (isEqual)
        row->bind(2, test.term());
    while (row->executeStep()) {
        const SQLite::Column text = row->getColumn(1);
        if (test({text.getText(), static_cast<std::size_t>(text.getBytes())}))
            numbers.push_back(row->getColumn(0).getInt64());
    }
    std::sort(numbers.begin(), numbers.end());
    return numbers;
}

qint64 Facets::count(qint64 number)
{
    const auto row = m_statements.take(sql::COUNT_OF_FACET);
    bindEach(*row, number);
    return row->executeStep() ? bounded(row->getColumn(0)) : 0;
}

qint64 Facets::count(FacetKind kind, const std::string &text)
{
    const auto row = m_statements.take(sql::SELECT_FACET);
    row->bind(1, static_cast<int>(kind));
    row->bind(2, text);
    return row->executeStep() ? bounded(row->getColumn(2)) : 0;
}

QStringList Facets::texts(FacetKind kind)
{
    QStringList texts;
    const auto row = m_statements.take(sql::SELECT_TEXTS);
    row->bind(1, static_cast<int>(kind));
    while (row->executeStep())
        texts.append(QString::fromStdString(row->getColumn(0).getString()));
    return texts;
}

} // namespace placesd
