// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "find/Candidates.h"

#include "find/Leaves.h"
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

/// Ids from here on are those of candidates: behind every stored place.
constexpr qint64 FIRST_CANDIDATE = qint64{1} << 62;

/// What a candidate is known by when it is found twice; empty when nothing tells.
QString sourceOf(const Place &place)
{
    const auto &records = PlacePrivate::privateFromPublic(&place)->auxiliaryData();
    if (records.isEmpty() || records.first().externalId().isEmpty())
        return {};
    const AuxiliaryData &record = records.first();
    return QStringList{record.type(), keyOf(record.provider()), record.externalId()}.join(QLatin1Char('\n'));
}

} // namespace

CandidateRow::CandidateRow(FoundPlace place, qint64 id)
    : m_place(std::move(place))
    , m_id(id)
    , m_nameKey(searchKey(m_place->name()).toStdString())
    , m_sortKey(placesd::sortKey(m_place->name()).toStdString())
{}

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
    return test(PlacePrivate::privateFromPublic(m_place.get())->auxiliaryData());
}

void Candidates::add(int source, const FoundPlace &place)
{
    const QString known = sourceOf(*place);
    qint64 id = m_store.storedIdOf(*place);
    if (id == PlaceId::UNDEFINED_PERSISTED_ID)
        id = m_known.value(known, PlaceId::UNDEFINED_PERSISTED_ID);
    if (id == PlaceId::UNDEFINED_PERSISTED_ID) {
        id = FIRST_CANDIDATE + static_cast<qint64>(m_rows.size());
        m_rows.emplace_back(place, id);
    }
    if (!known.isEmpty())
        m_known.insert(known, id);
    m_found[source].insert(id);
}

const CandidateRow *Candidates::row(qint64 id) const
{
    return id < FIRST_CANDIDATE ? nullptr : &m_rows[static_cast<std::size_t>(id - FIRST_CANDIDATE)];
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
