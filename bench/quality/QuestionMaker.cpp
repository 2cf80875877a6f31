// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "QuestionMaker.h"

#include "Spelling.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace bench
{

namespace
{

// Queries in a set.
constexpr std::size_t NAMES = 500;
constexpr std::size_t ADDRESSES = 200;
constexpr std::size_t SLIPS = 100;
constexpr std::size_t OTHER_NAMES = 200;

constexpr int BEGINNING = 5;        // letters
constexpr int SHORTEST_TO_SLIP = 6; // letters
/// Retries when a typing error gives a correct word.
constexpr int ATTEMPTS = 10;

constexpr Slip ALL_SLIPS[] = {Slip::Swapped, Slip::Missing, Slip::Wrong, Slip::Extra};

/// Countries where umlauts are typed as two letters.
constexpr const char *DIGRAPH_COUNTRIES[] = {"AT", "CH", "DE", "DK", "LI", "NO"};

bool hasDigraphs(const KnownPlace &place)
{
    return std::any_of(std::begin(DIGRAPH_COUNTRIES), std::end(DIGRAPH_COUNTRIES),
                       [&](const char *code) { return place.countryCode == QLatin1String(code); });
}

bool isLongLatinWord(const QString &word)
{
    return word.size() >= SHORTEST_TO_SLIP && std::all_of(word.begin(), word.end(), [](QChar each) {
               return each.isLetter() && each.script() == QChar::Script_Latin;
           });
}

/// Indexes of so many elements in random order.
std::vector<std::size_t> shuffled(std::size_t count, Random &random)
{
    std::vector<std::size_t> order(count);
    std::iota(order.begin(), order.end(), 0);
    for (std::size_t left = count; left > 1; --left)
        std::swap(order[left - 1], order[random.below(left)]);
    return order;
}

/// One of the other names, in the place's own script or in another one.
std::optional<QString> someName(const QStringList &names, const KnownPlace &place, bool inScript, Random &random)
{
    QStringList fitting;
    for (const QString &name : names) {
        const bool isSameScript = scriptOf(name) == scriptOf(place.name);
        if (isSameScript == inScript && folded(name) != folded(place.name))
            fitting.append(name);
    }
    return fitting.isEmpty() ? std::nullopt : std::optional(random.oneOf(fitting));
}

} // namespace

void QuestionMaker::add(const char *name, std::size_t count, const Make &make)
{
    // A separate seed per set: a change of one set does not affect the others.
    Random random(m_seed + (static_cast<std::uint64_t>(m_sets.size()) << 32));
    QuestionSet set{QString::fromLatin1(name), {}};
    QSet<QString> typed;
    for (const std::size_t index : shuffled(m_places.all().size(), random)) {
        std::optional<SearchQuestion> made = make(m_places.all()[index], random);
        if (!made || typed.contains(made->typed))
            continue;
        typed.insert(made->typed);
        set.questions.push_back(std::move(*made));
        if (set.questions.size() == count)
            break;
    }
    m_sets.push_back(std::move(set));
}

SearchQuestion QuestionMaker::question(const QString &typed, const KnownPlace &place, const IsMeant &isMeant) const
{
    SearchQuestion made{typed, {}};
    for (const KnownPlace *other : m_places.named(place.name)) {
        if (isMeant(*other))
            made.meant.push_back(other);
    }
    return made;
}

SearchQuestion QuestionMaker::question(const QString &typed, const KnownPlace &place) const
{
    return {typed, m_places.named(place.name)};
}

std::vector<QuestionSet> QuestionMaker::byName()
{
    m_sets.clear();
    addNames("city: name", "city: first five letters", false);
    addNames("airport: name", "airport: first five letters", true);
    add("airport: code", ADDRESSES, [this](const KnownPlace &place, Random &) -> std::optional<SearchQuestion> {
        if (place.airportCode.isEmpty())
            return std::nullopt;
        return question(place.airportCode, place, [&](const KnownPlace &other) { return &other == &place; });
    });
    addAddresses();
    addSlips();
    return std::move(m_sets);
}

void QuestionMaker::addNames(const char *name, const char *beginning, bool ofAirports)
{
    add(name, NAMES, [=](const KnownPlace &place, Random &) -> std::optional<SearchQuestion> {
        if (place.isAirport != ofAirports)
            return std::nullopt;
        return question(place.name, place);
    });
    add(beginning, NAMES, [=](const KnownPlace &place, Random &) -> std::optional<SearchQuestion> {
        if (place.isAirport != ofAirports || place.name.size() <= BEGINNING)
            return std::nullopt;
        return question(place.name.left(BEGINNING), place);
    });
}

void QuestionMaker::addAddresses()
{
    add("name region", ADDRESSES, [this](const KnownPlace &place, Random &) -> std::optional<SearchQuestion> {
        if (place.region.isEmpty())
            return std::nullopt;
        return question(place.name + QLatin1Char(' ') + place.region, place,
                        [&](const KnownPlace &other) { return other.region == place.region; });
    });
    add("name, country", ADDRESSES, [this](const KnownPlace &place, Random &) -> std::optional<SearchQuestion> {
        if (place.country.isEmpty())
            return std::nullopt;
        return question(place.name + QLatin1String(", ") + place.country, place,
                        [&](const KnownPlace &other) { return other.country == place.country; });
    });
}

void QuestionMaker::addSlips()
{
    constexpr const char *NAMES_OF_SLIPS[] = {"slip: neighbours swapped", "slip: letter missing", "slip: letter wrong",
                                              "slip: letter too many"};
    for (const Slip slip : ALL_SLIPS) {
        add(NAMES_OF_SLIPS[static_cast<std::size_t>(slip)], SLIPS,
            [=](const KnownPlace &place, Random &random) { return withSlipIn(place, slip, false, random); });
    }
    add("slip: first letter", SLIPS, [this](const KnownPlace &place, Random &random) {
        const Slip slip = ALL_SLIPS[random.below(std::size(ALL_SLIPS))];
        return withSlipIn(place, slip, true, random);
    });
}

std::optional<SearchQuestion> QuestionMaker::withSlipIn(const KnownPlace &place, Slip slip, bool isFirst,
                                                        Random &random) const
{
    QStringList words = place.name.split(QLatin1Char(' '));
    std::vector<int> fitting;
    for (int i = 0; i < words.size(); ++i) {
        if (isLongLatinWord(words[i]))
            fitting.push_back(i);
    }
    if (fitting.empty())
        return std::nullopt;
    const int chosen = random.oneOf(fitting);
    for (int i = 0; i < ATTEMPTS; ++i) {
        const QString typed = withSlip(words[chosen], slip, isFirst, random);
        if (m_places.hasWord(typed))
            continue;
        words[chosen] = typed;
        return question(words.join(QLatin1Char(' ')), place);
    }
    return std::nullopt;
}

std::vector<QuestionSet> QuestionMaker::byOtherNames()
{
    m_sets.clear();
    using Typed = std::function<std::optional<QString>(const KnownPlace &, Random &)>;
    const auto addTyped = [this](const char *name, const Typed &type) {
        add(name, OTHER_NAMES, [=](const KnownPlace &place, Random &random) -> std::optional<SearchQuestion> {
            const std::optional<QString> typed = type(place, random);
            if (!typed || *typed == place.name)
                return std::nullopt;
            return question(*typed, place);
        });
    };
    addTyped("without accents", [](const KnownPlace &place, Random &) { return withoutAccents(place.name); });
    addTyped("umlauts as ae, oe, ue", [](const KnownPlace &place, Random &) {
        return hasDigraphs(place) ? std::optional(withDigraphs(place.name)) : std::nullopt;
    });
    addTyped("another name",
             [](const KnownPlace &place, Random &random) { return someName(place.otherNames, place, true, random); });
    addTyped("name in another language",
             [](const KnownPlace &place, Random &random) { return someName(place.translations, place, true, random); });
    addTyped("name in another script", [](const KnownPlace &place, Random &random) {
        return someName(place.translations + place.otherNames, place, false, random);
    });
    return std::move(m_sets);
}

} // namespace bench
