// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KnownPlaces.h"
#include "QuestionSet.h"
#include "Slips.h"

#include <functional>
#include <optional>

namespace bench
{

/// Generates queries for known places. The same places and seed give the same queries.
class QuestionMaker
{
public:
    /// @param places must outlive the queries.
    QuestionMaker(const KnownPlaces &places, std::uint64_t seed)
        : m_places(places)
        , m_seed(seed)
    {}

    /// Queries by name, address and code, with and without typing errors.
    std::vector<QuestionSet> byName();
    /// Queries by other names and spellings of a place, if there are any.
    std::vector<QuestionSet> byOtherNames();

private:
    /// Generates a query for a place; std::nullopt when the place is not suitable.
    using Make = std::function<std::optional<SearchQuestion>(const KnownPlace &, Random &)>;
    /// Whether places of the same name are intended as well.
    using IsMeant = std::function<bool(const KnownPlace &other)>;

    /// Generates a set of at most `count` queries, each for another place and with another text.
    void add(const char *name, std::size_t count, const Make &make);
    void addNames(const char *name, const char *beginning, bool ofAirports);
    void addAddresses();
    void addSlips();
    [[nodiscard]] SearchQuestion question(const QString &typed, const KnownPlace &place, const IsMeant &isMeant) const;
    /// A query by name: any place of this name is intended.
    [[nodiscard]] SearchQuestion question(const QString &typed, const KnownPlace &place) const;
    [[nodiscard]] std::optional<SearchQuestion> withSlipIn(const KnownPlace &place, Slip slip, bool isFirst,
                                                           Random &random) const;

    const KnownPlaces &m_places;
    const std::uint64_t m_seed;
    std::vector<QuestionSet> m_sets;
};

} // namespace bench
