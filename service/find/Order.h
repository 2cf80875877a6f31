// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "find/Query.h"
#include "places/Coordinates.h"

#include <string>
#include <vector>

namespace placesd
{

class PlaceRow;

/// The order of a find's results: several criteria, then the id in the direction of the first criterion. Places of
/// other sources come after equal stored places, in the order of their source.
class Order
{
public:
    enum class By
    {
        Id,
        Relevance, ///< Usage count, then last use.
        Name,
        LastUse,
        Creation,
        Update,
        UsageCount,
        Distance ///< Places without a position always come last.
    };
    struct Criterion
    {
        By by = By::Id;
        bool isDescending = false;
        vela::platform::places::Coordinates centre; ///< Valid for distances only.
    };
    /// The sort key of a place.
    struct Key
    {
        struct Value
        {
            qint64 integer = 0;
            double real = 0;
            std::string text;
            bool isUnknown = false;
        };
        std::vector<Value> values; ///< Two values for relevance, one for other criteria.
        qint64 id = 0;
        bool isStored = true;
    };

    explicit Order(const Sort &sort);

    /// False for a sort rule that contains a number without a meaning.
    [[nodiscard]] bool isUnderstood() const { return m_isUnderstood; }

    [[nodiscard]] std::size_t criteria() const { return m_criteria.size(); }
    /// The first criterion; the id when there is none.
    [[nodiscard]] const Criterion &first() const { return m_criteria.front(); }
    /// Whether the order consists of the first criterion and the id only.
    [[nodiscard]] bool isSortedByFirst() const { return m_criteria.size() == 1; }

    [[nodiscard]] Key keyOf(const PlaceRow &row) const;
    /// Whether the place with key `a` comes before the one with key `b`.
    [[nodiscard]] bool operator()(const Key &a, const Key &b) const;
    /// Whether a place comes before all rows after `row` in a source sorted by the first criterion.
    [[nodiscard]] bool isBeforeAllBehind(const Key &key, const PlaceRow &row) const;

private:
    void add(const Sort &sort);
    static void appendValues(const Criterion &criterion, const PlaceRow &row, std::vector<Key::Value> &values);

    std::vector<Criterion> m_criteria; ///< Never empty.
    bool m_isUnderstood = true;
};

} // namespace placesd
