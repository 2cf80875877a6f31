// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KnownPlaces.h"
#include "QuestionSet.h"
#include "Slips.h"

#include <functional>
#include <optional>

namespace bench
{

/// Makes questions from known places. The same places and seed make the same questions.
class QuestionMaker
{
public:
    /// @param places what the questions refer to; outlives them.
    QuestionMaker(const KnownPlaces &places, std::uint64_t seed)
        : m_places(places)
        , m_seed(seed)
    {}

    /// Questions by the name, the address and the code, with and without slips.
    std::vector<QuestionSet> byName();
    /// Questions by other names and spellings of a place, where the data has some.
    std::vector<QuestionSet> byOtherNames();

private:
    /// The question that is made of a place; nothing where the place does not lend itself to it.
    using Make = std::function<std::optional<SearchQuestion>(const KnownPlace &, Random &)>;
    /// Whether places of the same name are meant as well.
    using IsMeant = std::function<bool(const KnownPlace &other)>;

    /// Makes a set of at most so many questions, each of another place and another text.
    void add(const char *name, std::size_t count, const Make &make);
    void addNames(const char *name, const char *beginning, bool ofAirports);
    void addAddresses();
    void addSlips();
    [[nodiscard]] SearchQuestion question(const QString &typed, const KnownPlace &place, const IsMeant &isMeant) const;
    /// A question by a name: any place of that name is meant.
    [[nodiscard]] SearchQuestion question(const QString &typed, const KnownPlace &place) const;
    [[nodiscard]] std::optional<SearchQuestion> withSlipIn(const KnownPlace &place, Slip slip, bool isFirst,
                                                           Random &random) const;

    const KnownPlaces &m_places;
    const std::uint64_t m_seed;
    std::vector<QuestionSet> m_sets;
};

} // namespace bench
