// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "find/Query.h"
#include "places/Coordinates.h"

#include <string>
#include <vector>

namespace placesd
{

class PlaceRow;

/// In which order a find gives places: by one criterion after the other, ties by id in the direction of the first one.
/// What is not stored comes behind stored places that are equal, in the order in which its source gave it.
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
        Distance ///< Places without a position come last, whatever the direction.
    };
    struct Criterion
    {
        By by = By::Id;
        bool isDescending = false;
        vela::platform::places::Coordinates centre; ///< Valid, and only for distances.
    };
    /// What a place is sorted by.
    struct Key
    {
        struct Value
        {
            qint64 integer = 0;
            double real = 0;
            std::string text;
            bool isUnknown = false;
        };
        std::vector<Value> values; ///< Two of a relevance, one of any other criterion.
        qint64 id = 0;
        bool isStored = true;
    };

    explicit Order(const Sort &sort);

    /// False for a sort rule with a number that has no meaning.
    [[nodiscard]] bool isUnderstood() const { return m_isUnderstood; }

    [[nodiscard]] std::size_t criteria() const { return m_criteria.size(); }
    /// The criterion that comes first; by id where there is none.
    [[nodiscard]] const Criterion &first() const { return m_criteria.front(); }
    /// Whether places that are sorted by the first criterion and by id are sorted.
    [[nodiscard]] bool isSortedByFirst() const { return m_criteria.size() == 1; }

    [[nodiscard]] Key keyOf(const PlaceRow &row) const;
    /// Whether the place with key `a` comes before that with key `b`.
    [[nodiscard]] bool operator()(const Key &a, const Key &b) const;
    /// Whether a place comes before all that follow a row of a source that is sorted by the first criterion.
    [[nodiscard]] bool isBeforeAllBehind(const Key &key, const PlaceRow &row) const;

private:
    void add(const Sort &sort);
    static void appendValues(const Criterion &criterion, const PlaceRow &row, std::vector<Key::Value> &values);

    std::vector<Criterion> m_criteria; ///< At least one.
    bool m_isUnderstood = true;
};

} // namespace placesd
