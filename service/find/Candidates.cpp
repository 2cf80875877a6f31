// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "find/Candidates.h"

#include "find/Leaves.h"
#include "model/InternalTags.h"
#include "model/PlaceId.h"
#include "model/PlacePrivate.h"
#include "store/IndexEntries.h"
#include "store/Store.h"

#include <algorithm>

namespace placesd
{

using namespace vela::platform::places;

namespace
{

/// Ids of candidates start here, above all ids of stored places.
constexpr qint64 FIRST_CANDIDATE = qint64{1} << 62;
constexpr qint64 NONE = PlaceId::UNDEFINED_PERSISTED_ID;

/// Identifies a candidate that is found twice; empty when it has no identity.
QString keyOf(const PlacePrivate &place)
{
    if (place.isRecentSearchTerm())
        return place.name();
    return place.auxiliaryData().isEmpty() ? QString() : originKey(place.auxiliaryData().first());
}

} // namespace

CandidateRow::CandidateRow(FoundPlace place, qint64 id)
    : m_place(std::move(place))
    , m_id(id)
{}

std::string_view CandidateRow::nameKey() const
{
    if (!m_nameKey)
        m_nameKey = indexKey(m_place->name()).toStdString();
    return *m_nameKey;
}

std::string_view CandidateRow::sortKey() const
{
    if (!m_sortKey)
        m_sortKey = placesd::sortKey(m_place->name()).toStdString();
    return *m_sortKey;
}

Coordinates CandidateRow::position() const
{
    return m_place->primaryCoordinates();
}

bool CandidateRow::passes(const FacetTest &test) const
{
    const PlacePrivate &data = *PlacePrivate::privateFromPublic(m_place.get());
    const auto passesText = [&test](const QString &text) { return test.text(text.toStdString()); };
    switch (test.kind) {
    case FacetKind::Owner:
        return passesText(QString());
    case FacetKind::Tag:
        return std::any_of(data.tags().begin(), data.tags().end(), passesText);
    case FacetKind::Type:
        return std::any_of(data.auxiliaryData().begin(), data.auxiliaryData().end(),
                           [&](const AuxiliaryData &record) { return passesText(record.type()); });
    default:
        return false;
    }
}

bool CandidateRow::passes(const PropertyTest &test) const
{
    return test(PlacePrivate::privateFromPublic(m_place.get())->auxiliaryData(), [] {});
}

bool CandidateRow::passes(const TermTest &test) const
{
    if (test.isOfNames())
        return test(nameKey());
    if (!m_textKey)
        m_textKey = textKeyOf(*PlacePrivate::privateFromPublic(m_place.get())).toStdString();
    return test(*m_textKey);
}

void Candidates::add(int source, const std::vector<FoundPlace> &places)
{
    for (const FoundPlace &place : places)
        add(source, place, places.size());
}

void Candidates::add(int source, const FoundPlace &place, std::size_t expected)
{
    const QString key = keyOf(*PlacePrivate::privateFromPublic(place.get()));
    qint64 id = storedIdOf(place, key, expected);
    if (id == NONE)
        id = m_known.value(key, NONE);
    if (id == NONE) {
        id = FIRST_CANDIDATE + static_cast<qint64>(m_rows.size());
        m_rows.emplace_back(place, id);
    }
    if (!key.isEmpty())
        m_known.insert(key, id);
    m_found[source].insert(id);
}

/// When fewer places of the type are stored than candidates expected, one statement fetches them all.
qint64 Candidates::storedIdOf(const FoundPlace &place, const QString &key, std::size_t expected)
{
    static const QString SUGGESTION = QLatin1String(InternalTags::Suggestion);
    const PlacePrivate &data = *PlacePrivate::privateFromPublic(place.get());
    if (key.isEmpty() || data.auxiliaryData().isEmpty() || data.hasTag(SUGGESTION))
        return NONE;
    const QString type = data.auxiliaryData().first().type();
    auto stored = m_stored.find(type);
    if (stored == m_stored.end())
        stored = m_stored.emplace(type, m_store.storedOrigins(type, static_cast<qint64>(expected), m_external)).first;
    return stored->second ? stored->second->value(key, NONE) : m_store.storedIdOf(*place, m_external);
}

const CandidateRow *Candidates::row(qint64 id) const
{
    if (id < FIRST_CANDIDATE)
        return nullptr;
    const auto position = static_cast<std::size_t>(id - FIRST_CANDIDATE);
    return position < m_rows.size() ? &m_rows[position] : nullptr;
}

bool Candidates::wasFound(qint64 id) const
{
    return std::any_of(m_found.begin(), m_found.end(), [id](const auto &found) { return found.second.count(id) > 0; });
}

bool Candidates::wasFoundBy(int source, qint64 id) const
{
    const auto found = m_found.find(source);
    return found != m_found.end() && found->second.count(id) > 0;
}

std::vector<qint64> Candidates::storedIds(int source) const
{
    std::vector<qint64> ids;
    for (const auto &found : m_found) {
        if (source == FoundCondition::ANY || found.first == source)
            std::copy_if(found.second.begin(), found.second.end(), std::back_inserter(ids),
                         [](qint64 id) { return id < FIRST_CANDIDATE; });
    }
    std::sort(ids.begin(), ids.end());
    ids.erase(std::unique(ids.begin(), ids.end()), ids.end());
    return ids;
}

} // namespace placesd
