// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "model/PlacePrivate.h"
#include "requests/Service.h"

#include <algorithm>
#include <iterator>

namespace placesd
{

using namespace orix_places_protocol;
using vela::platform::places::AuxiliaryData;
using vela::platform::places::Place;
using vela::platform::places::PlaceId;
using vela::platform::places::PlacePrivate;
using vela::platform::places::Provider;

namespace
{

bool isWanted(const AuxiliaryData &record, const AuxiliaryQuery &query)
{
    return (query.type.isEmpty() || record.type() == query.type)
           && (!query.provider.isValid() || record.provider() == query.provider);
}

/// The data by which a provider identifies a place: its own id, from the place's records, and the displayed values.
PlaceIdentity identityFor(const PlaceProvider &provider, const AuxiliaryQuery &query, const Place *place)
{
    const Provider description = provider.description();
    PlaceIdentity identity{query.externalIds.value(description), query.name, query.coordinates};
    if (!place)
        return identity;
    identity.name = place->name();
    identity.coordinates = place->primaryCoordinates();
    for (const AuxiliaryData &record : PlacePrivate::privateFromPublic(place)->auxiliaryData()) {
        if (record.provider() == description && !record.externalId().isEmpty())
            identity.externalId = record.externalId();
    }
    return identity;
}

} // namespace

Service::Outcome Service::getPlaceFromSuggestion(Request &request, Encoder &reply)
{
    QString text;
    Coordinates centre;
    if (!request.reader.readSuggestion(text, centre))
        return request.reader.problem();
    if (m_pool != Pool::Slow)
        return Pool::Slow;
    for (const QString &type : {AuxiliaryData::TypePointOfInterest, AuxiliaryData::TypeContact}) {
        Outcome outcome = answerWith(text, type, centre, request, reply);
        if (outcome != Outcome(ReturnCode::NoSuchPlace))
            return outcome;
    }
    // No id in the search: the provider's first result for this text.
    ProviderSearch search;
    search.term = text;
    search.centre = centre;
    search.count = 1;
    search.deadline = request.deadline;
    return answerWith(m_shared.providers.search(search), request, reply);
}

Service::Outcome Service::getPlaceFromContact(Request &request, Encoder &reply)
{
    int account = 0;
    int contact = 0;
    int number = 0;
    if (!request.reader.readContact(account, contact, number))
        return request.reader.problem();
    const QString externalId = contactExternalId(account, contact, number);
    return answerWith(externalId, AuxiliaryData::TypeContact, Coordinates(), request, reply);
}

Service::Outcome Service::answerWith(const QString &externalId, const QString &type, const Coordinates &centre,
                                     Request &request, Encoder &reply)
{
    if (externalId.isEmpty())
        return ReturnCode::NoSuchPlace;
    if (const qint64 id = m_store.idOf(externalId, type, request.caller.external);
        id != PlaceId::UNDEFINED_PERSISTED_ID)
        return encodeStored(id, request, reply);
    if (type == AuxiliaryData::TypeContact)
        return request.caller.external ? ReturnCode::NoSuchPlace : answerWithContact(externalId, request, reply);
    if (m_shared.providers.isEmpty())
        return ReturnCode::NoSuchPlace;
    if (m_pool != Pool::Slow)
        return Pool::Slow;
    return answerWith(m_shared.providers.resolve(externalId, centre, request.deadline), request, reply);
}

Service::Outcome Service::answerWithContact(const QString &externalId, Request &request, Encoder &reply)
{
    ContactBook *contacts = m_shared.contacts.get();
    // Looking for changed files can block, so the writer never does it.
    const bool isSlow = contacts && (m_pool == Pool::Writer || (m_pool == Pool::Fast && !contacts->isRead()));
    if (isSlow)
        return Pool::Slow;
    ProvidersAnswer answer;
    if (const FoundPlace place = contacts ? contacts->place(externalId, request.deadline) : nullptr)
        answer.places.push_back(place);
    return answerWith(answer, request, reply);
}

Status Service::answerWith(const ProvidersAnswer &answer, const Request &request, Encoder &reply)
{
    if (answer.places.empty())
        return answer.code == ReturnCode::Success ? ReturnCode::NoSuchPlace : answer.code;
    const Place &place = *answer.places.front();
    if (const qint64 id = m_store.storedIdOf(place, request.caller.external); id != PlaceId::UNDEFINED_PERSISTED_ID)
        return encodeStored(id, request, reply);
    makeRoom(reply, request);
    reply.encodePlace(place);
    return ReturnCode::Success;
}

Service::Outcome Service::getAuxiliaryData(Request &request, Encoder &reply)
{
    AuxiliaryQuery query;
    if (!request.reader.readAuxiliaryQuery(query))
        return request.reader.problem();
    const bool isStored = query.place != PlaceId::UNDEFINED_PERSISTED_ID;
    if (Status problem = isStored ? permitPlace(query.place, request) : ReturnCode::Success;
        problem != ReturnCode::Success)
        return problem;
    const std::unique_ptr<Place> place = isStored ? m_store.place(query.place) : nullptr;
    QList<AuxiliaryData> found;
    if (place && !query.remoteOnly) {
        const auto &records = PlacePrivate::privateFromPublic(place.get())->auxiliaryData();
        std::copy_if(records.begin(), records.end(), std::back_inserter(found),
                     [&query](const AuxiliaryData &record) { return isWanted(record, query); });
    }
    if (!m_shared.providers.providersFor(query.type, query.provider).empty()) {
        if (m_pool != Pool::Slow)
            return Pool::Slow;
        const ReturnCode code = addRemoteData(query, place.get(), request.deadline, found);
        if (code != ReturnCode::Success && found.isEmpty())
            return code;
    }
    makeRoom(reply, request);
    reply.encodeAuxiliaryDataList(found.mid(std::max(query.offset, 0), query.limit < 0 ? -1 : query.limit));
    return ReturnCode::Success;
}

/// Adds the records of the providers that are not in `found`. Returns the code of the first provider that failed.
ReturnCode Service::addRemoteData(const AuxiliaryQuery &query, const Place *place, Deadline deadline,
                                  QList<AuxiliaryData> &found) const
{
    ReturnCode failure = ReturnCode::Success;
    for (PlaceProvider *provider : m_shared.providers.providersFor(query.type, query.provider)) {
        const AuxiliaryAnswer answer =
            Providers::auxiliaryData(*provider, identityFor(*provider, query, place), deadline);
        if (failure == ReturnCode::Success)
            failure = answer.code;
        for (const AuxiliaryData &record : answer.records) {
            const bool isKnown = std::any_of(found.begin(), found.end(), [&record](const AuxiliaryData &known) {
                return known.type() == record.type() && known.externalId() == record.externalId()
                       && known.provider() == record.provider();
            });
            if (!isKnown && isWanted(record, query))
                found.append(record);
        }
    }
    return failure;
}

Service::Outcome Service::getProviders(Request &, Encoder &reply)
{
    const QList<Provider> providers = m_shared.providers.descriptions();
    reply.encodeCount(providers.size());
    for (const Provider &provider : providers)
        reply.encodeProvider(provider);
    return ReturnCode::Success;
}

} // namespace placesd
