// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "requests/Service.h"

#include "auxdata/AuxiliaryDataPrivate.h"
#include "find/Finder.h"
#include "Limits.h"
#include "Log.h"
#include "model/LocationPrivate.h"
#include "model/PlacePrivate.h"
#include "places/Tags.h"

#include <algorithm>
#include <array>
#include <ctime>
#include <iterator>
#include <limits>

#include <msgclient.h>
#include <sqlite3.h>

namespace placesd
{

using namespace orix_places_protocol;
using vela::platform::places::AuxiliaryData;
using vela::platform::places::Location;
using vela::platform::places::LocationPrivate;
using vela::platform::places::Place;
using vela::platform::places::PlaceId;
using vela::platform::places::PlacePrivate;
using vela::platform::places::Provider;
namespace Tags = vela::platform::places::Tags;

namespace
{

/// Says that a request takes a service that may wait. It is no answer.
constexpr auto FOR_THE_PATIENT = static_cast<ReturnCode>(-1);

quint64 now()
{
    return static_cast<quint64>(std::time(nullptr));
}

ReturnCode codeOf(const SQLite::Exception &error)
{
    switch (error.getErrorCode()) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return ReturnCode::Busy;
    case SQLITE_INTERRUPT:
        return ReturnCode::TookTooLong;
    default:
        return ReturnCode::StorageFailed;
    }
}

/// Whether a place can be stored, whoever sent it.
ReturnCode accept(const PlacePrivate &place)
{
    constexpr int KEPT = PlacePrivate::InRecentBucket | PlacePrivate::ExplicitlySaved;
    const auto &records = place.auxiliaryData();
    const auto isLong = [](const QString &text) { return text.size() > limits::TEXT_LENGTH; };
    const auto isEmpty = [](const QString &text) { return text.isEmpty(); };
    const bool tooLong = isLong(place.name()) || isLong(place.searchTerm())
                         || std::any_of(place.tags().begin(), place.tags().end(), isLong)
                         || place.locations().size() > limits::LIST_LENGTH || records.size() > limits::LIST_LENGTH
                         || place.tags().size() > limits::LIST_LENGTH || place.aliases().size() > limits::LIST_LENGTH
                         || std::any_of(records.begin(), records.end(), [](const AuxiliaryData &record) {
                                return record.properties().size() > limits::LIST_LENGTH;
                            });
    if (tooLong)
        return ReturnCode::LimitExceeded;
    if (place.locations().isEmpty() || (place.persistenceMask() & KEPT) == 0 || place.usageCount() < 0
        || std::any_of(place.tags().begin(), place.tags().end(), isEmpty))
        return ReturnCode::PlaceNotAcceptable;
    return ReturnCode::Success;
}

template <typename List, typename Condition>
void removeIf(List &list, Condition condition)
{
    list.erase(std::remove_if(list.begin(), list.end(), condition), list.end());
}

/// Leaves only what is stored with a place. A location that says nothing could be counted in a record but not written,
/// and nobody could read the record again.
void dropWhatIsNotStored(PlacePrivate &place)
{
    removeIf(place.m_auxiliaryData, [](const AuxiliaryData &record) { return !record.isPersistable(); });
    removeIf(place.m_locations,
             [](const Location &location) { return LocationPrivate::privateFromPublic(&location)->saysNothing(); });
}

/// A request may name a place's own perimeter or none, but no other.
ReturnCode permit(Perimeter named, vela::system::SecurityPerimeter::Type own)
{
    const bool permitted = named == Perimeter::Default || named == fromSystemPerimeter(own);
    return permitted ? ReturnCode::Success : ReturnCode::NotPermitted;
}

bool encodeRecord(PlacesAPIEncoder &reply, const std::string &record)
{
    const auto size = static_cast<unsigned int>(record.size());
    return reply.ensureBuffer(size, true) && reply.encodeCharArray(record.data(), size);
}

bool isWanted(const AuxiliaryData &record, const AuxiliaryQuery &query)
{
    return (query.type.isEmpty() || record.type() == query.type)
           && (!query.provider.isValid() || record.provider() == query.provider);
}

/// What a provider can know a place by: its own id, which a stored place has in its records, and what it shows.
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

/// Starts a reply anew: status only.
std::unique_ptr<PlacesAPIEncoder> status(ReturnCode code, int requestType)
{
    auto reply = std::make_unique<PlacesAPIEncoder>();
    reply->encode(static_cast<int>(code));
    reply->encode(static_cast<int>(static_cast<unsigned int>(requestType) + REPLY_OFFSET));
    return reply;
}

} // namespace

/// What the service does for a type of request, whether it does it for every application, and whether it always takes
/// long.
struct Service::Entry
{
    MessageType type;
    Operation operation;
    bool external;
    bool takesLong = false;
};

const Service::Entry *Service::entryOf(int type)
{
    static constexpr std::array<Entry, 20> ENTRIES = {{
        {MessageType::AddPlace, &Service::addPlace, true},
        {MessageType::GetRecentSearchTerms, &Service::getRecentSearchTerms, false},
        {MessageType::GetAuxiliaryData, &Service::getAuxiliaryData, true},
        {MessageType::RemovePlace, &Service::removePlace, true},
        {MessageType::UpdatePlace, &Service::updatePlace, true},
        {MessageType::IncrementUsage, &Service::incrementUsage, true},
        {MessageType::AddTag, &Service::addTag, true},
        {MessageType::RemoveTag, &Service::removeTag, true},
        {MessageType::GetTags, &Service::getTags, true},
        {MessageType::GetPlaceFromContact, &Service::getPlaceFromContact, false},
        {MessageType::RemoveRecentlyPickedPlaces, &Service::clearRecentlyPicked, false},
        {MessageType::GetPlace, &Service::getPlace, true},
        {MessageType::FindPlaces, &Service::findPlaces, true},
        {MessageType::Unfav, &Service::unfav, true},
        {MessageType::Backup, &Service::backUp, false, true},
        {MessageType::Restore, &Service::restore, false, true},
        {MessageType::FindPlacesSize, &Service::findPlacesSize, true},
        {MessageType::GetPlaceFromSuggestion, &Service::getPlaceFromSuggestion, true},
        {MessageType::GetProviders, &Service::getProviders, true},
        {MessageType::GetHeaderFromFullPlace, &Service::getHeader, true},
    }};
    const bool known = type >= 1 && type <= static_cast<int>(ENTRIES.size());
    return known ? &ENTRIES[static_cast<std::size_t>(type - 1)] : nullptr;
}

Service::Service(Shared &shared, Patience patience)
    : m_shared(shared)
    , m_patience(patience)
    , m_store(shared.database, shared.writeLock)
{}

std::unique_ptr<PlacesAPIEncoder> Service::answer(const char *bytes, unsigned int length, const Caller &caller,
                                                  Deadline deadline)
{
    const _msgserver_data message = {bytes, length};
    Request request{RequestReader(&message), {}, caller, deadline};
    if (!request.reader.readHead(request.head))
        return status(ReturnCode::TransportFailed, 0);

    const int type = request.head.type;
    auto reply = status(ReturnCode::Success, type);
    ReturnCode code = ReturnCode::Success;
    try {
        m_store.startRequest(deadline);
        code = perform(request, *reply);
    } catch (const SQLite::Exception &error) {
        code = codeOf(error);
        logError("request of type %d failed: %s", type, error.what());
    } catch (const std::bad_alloc &) {
        code = ReturnCode::LimitExceeded;
    }
    if (code == FOR_THE_PATIENT)
        return nullptr;
    return code == ReturnCode::Success ? std::move(reply) : status(code, type);
}

ReturnCode Service::perform(Request &request, Encoder &reply)
{
    const Entry *entry = entryOf(request.head.type);
    if (!entry)
        return ReturnCode::NotUnderstood;
    const bool permitted = request.caller.external ? entry->external : request.caller.trusted;
    const std::string &key = m_shared.sessionKey;
    if (!permitted || (!key.empty() && request.head.sessionKey != key))
        return ReturnCode::NotPermitted;
    if (entry->takesLong && m_patience == Patience::AnswersAtOnce)
        return FOR_THE_PATIENT;
    return (this->*entry->operation)(request, reply);
}

ReturnCode Service::addPlace(Request &request, Encoder &reply)
{
    std::unique_ptr<Place> place;
    if (!request.reader.readPlace(place))
        return request.reader.problem();
    if (place->isPersisted())
        return ReturnCode::AlreadyStored;
    PlacePrivate &data = *PlacePrivate::privateFromPublic(place.get());
    dropWhatIsNotStored(data);
    if (const ReturnCode problem = accept(data); problem != ReturnCode::Success)
        return problem;

    if (const ReturnCode problem = permit(request.head.perimeter, data.securityPerimeter());
        problem != ReturnCode::Success)
        return problem;

    data.setCreatedTime(now());
    data.setUpdatedTime(data.createdTime());
    // Picking a place is a use of it: what was picked just now comes first among what was picked.
    if (data.persistenceMask() == PlacePrivate::InRecentBucket && data.lastUsedTime() == 0)
        data.setLastUsedTime(data.createdTime());
    m_store.write([&] {
        m_store.rememberTerm(data.takeSearchTerm());
        m_store.insert(*place);
        return true;
    });
    reply.encode(place->id());
    return ReturnCode::Success;
}

ReturnCode Service::permitPlace(qint64 id, const Request &request)
{
    const std::optional<Store::Standing> standing = m_store.standingOf(id);
    // The external channel knows only what was saved.
    const bool isKnown =
        standing && (!request.caller.external || (standing->persistenceMask & PlacePrivate::ExplicitlySaved) != 0);
    return isKnown ? permit(request.head.perimeter, standing->perimeter) : ReturnCode::NoSuchPlace;
}

ReturnCode Service::change(qint64 id, const Request &request, const Change &change)
{
    ReturnCode code = ReturnCode::Success;
    m_store.write([&] {
        code = permitPlace(id, request);
        if (code != ReturnCode::Success)
            return false;
        const std::unique_ptr<Place> before = m_store.place(id);
        const std::unique_ptr<Place> after = m_store.place(id);
        code = change(*after);
        if (code == ReturnCode::Success)
            m_store.update(*after, *before);
        return code == ReturnCode::Success;
    });
    return code;
}

ReturnCode Service::updatePlace(Request &request, Encoder &)
{
    std::unique_ptr<Place> place;
    if (!request.reader.readPlace(place))
        return request.reader.problem();
    PlacePrivate &fresh = *PlacePrivate::privateFromPublic(place.get());
    dropWhatIsNotStored(fresh);
    if (const ReturnCode problem = accept(fresh); problem != ReturnCode::Success)
        return problem;

    return change(place->id(), request, [&](Place &stored) {
        PlacePrivate &data = *PlacePrivate::privateFromPublic(&stored);
        m_store.rememberTerm(fresh.takeSearchTerm());
        // What the service itself counts stays: the sender may not have the latest.
        fresh.setCreatedTime(data.createdTime());
        fresh.setUpdatedTime(now());
        fresh.setLastUsedTime(data.lastUsedTime());
        fresh.setUsageCount(data.usageCount());
        fresh.m_securityPerimeter = data.securityPerimeter();
        data = fresh;
        return ReturnCode::Success;
    });
}

ReturnCode Service::removePlace(Request &request, Encoder &)
{
    qint64 id = -1;
    if (!request.reader.readId(id))
        return request.reader.problem();
    // The place itself is not looked at: one that cannot be read can be removed all the same.
    ReturnCode code = ReturnCode::Success;
    m_store.write([&] {
        code = permitPlace(id, request);
        return code == ReturnCode::Success && m_store.remove(id);
    });
    return code;
}

ReturnCode Service::incrementUsage(Request &request, Encoder &)
{
    qint64 id = -1;
    QString searchTerm;
    if (!request.reader.readIdAndText(id, searchTerm))
        return request.reader.problem();
    return change(id, request, [&](Place &place) {
        PlacePrivate &data = *PlacePrivate::privateFromPublic(&place);
        m_store.rememberTerm(searchTerm);
        data.setLastUsedTime(now());
        if (data.usageCount() < std::numeric_limits<int>::max())
            data.incrementUsageCount();
        return ReturnCode::Success;
    });
}

ReturnCode Service::addTag(Request &request, Encoder &)
{
    return changeTag(request, true);
}

ReturnCode Service::removeTag(Request &request, Encoder &)
{
    return changeTag(request, false);
}

ReturnCode Service::changeTag(Request &request, bool add)
{
    qint64 id = -1;
    QString tag;
    if (!request.reader.readIdAndText(id, tag))
        return request.reader.problem();
    return change(id, request, [&](Place &place) {
        PlacePrivate &data = *PlacePrivate::privateFromPublic(&place);
        if (add ? data.addTag(tag) : data.removeTag(tag))
            data.setUpdatedTime(now());
        return accept(data);
    });
}

ReturnCode Service::unfav(Request &request, Encoder &reply)
{
    qint64 id = -1;
    if (!request.reader.readId(id))
        return request.reader.problem();
    // The tag goes, the place stays.
    constexpr bool STILL_STORED = true;
    reply.encode(STILL_STORED);
    return change(id, request, [](Place &place) {
        PlacePrivate &data = *PlacePrivate::privateFromPublic(&place);
        if (data.removeTag(Tags::Favorite))
            data.setUpdatedTime(now());
        return ReturnCode::Success;
    });
}

ReturnCode Service::getTags(Request &, Encoder &reply)
{
    reply.encodeQStringList(m_store.tags());
    return ReturnCode::Success;
}

ReturnCode Service::getRecentSearchTerms(Request &request, Encoder &reply)
{
    QString prefix;
    if (!request.reader.readTermPrefix(prefix))
        return request.reader.problem();
    reply.encodeQStringList(m_store.recentTerms(prefix));
    return ReturnCode::Success;
}

ReturnCode Service::clearRecentlyPicked(Request &, Encoder &)
{
    m_store.write([this] { return m_store.clearRecentBucket(), true; });
    return ReturnCode::Success;
}

ReturnCode Service::getPlace(Request &request, Encoder &reply)
{
    qint64 id = -1;
    QString externalId;
    QString type;
    QString searchTerm;
    if (!request.reader.readGetPlace(id, externalId, type, searchTerm))
        return request.reader.problem();
    ReturnCode code = ReturnCode::Success;
    if (id == PlaceId::UNDEFINED_PERSISTED_ID)
        code = answerWith(externalId, type, Coordinates(), request, reply);
    else
        code = encodeStored(id, request, reply);
    if (code == ReturnCode::Success && !searchTerm.isEmpty())
        m_store.write([&] { return m_store.rememberTerm(searchTerm), true; });
    return code;
}

ReturnCode Service::encodeStored(qint64 id, const Request &request, Encoder &reply)
{
    if (const ReturnCode problem = permitPlace(id, request); problem != ReturnCode::Success)
        return problem;
    encodeRecord(reply, m_store.storedRecord(id, false));
    return ReturnCode::Success;
}

ReturnCode Service::findPlaces(Request &request, Encoder &reply)
{
    Query query;
    if (!request.reader.readQuery(query))
        return request.reader.problem();
    if (query.count < 0 || query.count > limits::PAGE_SIZE || query.offset < 0)
        return ReturnCode::LimitExceeded;
    const int offset = query.offset;
    const PlaceSources sources{m_shared.providers, m_shared.contacts.get()};
    Finder finder(m_store, sources, std::move(query), request.caller.external, request.deadline);
    if (finder.takesLong() && m_patience == Patience::AnswersAtOnce)
        return FOR_THE_PATIENT;
    Page page;
    if (const ReturnCode code = finder.find(page); code != ReturnCode::Success)
        return code;

    constexpr std::size_t ROOM_FOR_FILL_AND_MAPPING = 16;
    std::size_t size = 64;
    for (const std::string &record : page.records)
        size += record.size() + ROOM_FOR_FILL_AND_MAPPING;
    if (size > limits::REPLY_SIZE)
        return ReturnCode::LimitExceeded;
    reply.ensureBuffer(static_cast<unsigned int>(size), false);

    const auto count = static_cast<int>(page.records.size());
    reply.encode(count);
    for (const std::string &record : page.records)
        encodeRecord(reply, record);
    reply.encode(page.hasMore);
    reply.encode(offset);
    reply.encode(page.next.batch);
    reply.encode(page.next.position);
    reply.encode(count);
    for (const Cursor &cursor : page.cursors) {
        reply.encode(cursor.batch);
        reply.encode(cursor.position);
    }
    return ReturnCode::Success;
}

ReturnCode Service::backUp(Request &request, Encoder &)
{
    std::string path;
    return request.reader.readPath(path) ? m_shared.backups.backUp(path, request.deadline) : request.reader.problem();
}

ReturnCode Service::restore(Request &request, Encoder &)
{
    std::string path;
    return request.reader.readPath(path) ? m_shared.backups.restore(path, request.deadline) : request.reader.problem();
}

ReturnCode Service::findPlacesSize(Request &request, Encoder &reply)
{
    Query query;
    if (!request.reader.readQuery(query))
        return request.reader.problem();
    const PlaceSources sources{m_shared.providers, m_shared.contacts.get()};
    Finder finder(m_store, sources, std::move(query), request.caller.external, request.deadline);
    if (finder.takesLong() && m_patience == Patience::AnswersAtOnce)
        return FOR_THE_PATIENT;
    int count = 0;
    const ReturnCode code = finder.count(count);
    reply.encode(count);
    return code;
}

ReturnCode Service::getPlaceFromSuggestion(Request &request, Encoder &reply)
{
    QString text;
    Coordinates centre;
    if (!request.reader.readSuggestion(text, centre))
        return request.reader.problem();
    if (m_patience == Patience::AnswersAtOnce)
        return FOR_THE_PATIENT;
    for (const QString &type : {AuxiliaryData::TypePointOfInterest, AuxiliaryData::TypeContact}) {
        const ReturnCode code = answerWith(text, type, centre, request, reply);
        if (code != ReturnCode::NoSuchPlace)
            return code;
    }
    // No id: what a provider would give first for such a text.
    ProviderSearch search;
    search.term = text;
    search.centre = centre;
    search.count = 1;
    search.deadline = request.deadline;
    return answerWith(m_shared.providers.search(search), request, reply);
}

ReturnCode Service::answerWith(const QString &externalId, const QString &type, const Coordinates &centre,
                               Request &request, Encoder &reply)
{
    if (externalId.isEmpty())
        return ReturnCode::NoSuchPlace;
    if (const qint64 id = m_store.idOf(externalId, type); id != PlaceId::UNDEFINED_PERSISTED_ID)
        return encodeStored(id, request, reply);
    if (type == AuxiliaryData::TypeContact)
        return request.caller.external ? ReturnCode::NoSuchPlace : answerWithContact(externalId, request, reply);
    if (m_shared.providers.isEmpty())
        return ReturnCode::NoSuchPlace;
    if (m_patience == Patience::AnswersAtOnce)
        return FOR_THE_PATIENT;
    return answerWith(m_shared.providers.resolve(externalId, centre, request.deadline), request, reply);
}

ReturnCode Service::getPlaceFromContact(Request &request, Encoder &reply)
{
    int account = 0;
    int contact = 0;
    int number = 0;
    if (!request.reader.readContact(account, contact, number))
        return request.reader.problem();
    const QString externalId = contactExternalId(account, contact, number);
    return answerWith(externalId, AuxiliaryData::TypeContact, Coordinates(), request, reply);
}

ReturnCode Service::answerWithContact(const QString &externalId, Request &request, Encoder &reply)
{
    ContactBook *contacts = m_shared.contacts.get();
    if (contacts && !contacts->isRead() && m_patience == Patience::AnswersAtOnce)
        return FOR_THE_PATIENT;
    ProvidersAnswer answer;
    if (const FoundPlace place = contacts ? contacts->place(externalId, request.deadline) : nullptr)
        answer.places.push_back(place);
    return answerWith(answer, request, reply);
}

ReturnCode Service::answerWith(const ProvidersAnswer &answer, const Request &request, Encoder &reply)
{
    if (answer.places.empty())
        return answer.code == ReturnCode::Success ? ReturnCode::NoSuchPlace : answer.code;
    const Place &place = *answer.places.front();
    if (const qint64 id = m_store.storedIdOf(place); id != PlaceId::UNDEFINED_PERSISTED_ID)
        return encodeStored(id, request, reply);
    reply.encodePlace(place);
    return ReturnCode::Success;
}

ReturnCode Service::getAuxiliaryData(Request &request, Encoder &reply)
{
    AuxiliaryQuery query;
    if (!request.reader.readAuxiliaryQuery(query))
        return request.reader.problem();
    const bool isStored = query.place != PlaceId::UNDEFINED_PERSISTED_ID;
    if (const ReturnCode problem = isStored ? permitPlace(query.place, request) : ReturnCode::Success;
        problem != ReturnCode::Success)
        return problem;
    const std::unique_ptr<Place> place = isStored ? m_store.place(query.place) : nullptr;
    QList<AuxiliaryData> found;
    if (place && !query.remoteOnly) {
        const auto &records = PlacePrivate::privateFromPublic(place.get())->auxiliaryData();
        std::copy_if(records.begin(), records.end(), std::back_inserter(found),
                     [&query](const AuxiliaryData &record) { return isWanted(record, query); });
    }
    if (!m_shared.providers.thatGive(query.type, query.provider).empty()) {
        if (m_patience == Patience::AnswersAtOnce)
            return FOR_THE_PATIENT;
        const ReturnCode code = addRemoteData(query, place.get(), request.deadline, found);
        if (code != ReturnCode::Success && found.isEmpty())
            return code;
    }
    reply.encodeAuxiliaryDataList(found.mid(std::max(query.offset, 0), query.limit < 0 ? -1 : query.limit));
    return ReturnCode::Success;
}

/// Adds what the providers have to say, but for what is stored already. Returns how the first one that failed did so.
ReturnCode Service::addRemoteData(const AuxiliaryQuery &query, const Place *place, Deadline deadline,
                                  QList<AuxiliaryData> &found) const
{
    ReturnCode failure = ReturnCode::Success;
    for (PlaceProvider *provider : m_shared.providers.thatGive(query.type, query.provider)) {
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

ReturnCode Service::getProviders(Request &, Encoder &reply)
{
    const QList<Provider> providers = m_shared.providers.descriptions();
    reply.encode(providers.size());
    for (const Provider &provider : providers)
        reply.encodeProvider(provider);
    return ReturnCode::Success;
}

ReturnCode Service::getHeader(Request &request, Encoder &reply)
{
    std::unique_ptr<Place> place;
    if (!request.reader.readPlace(place))
        return request.reader.problem();
    reply.encodePlaceHeader(*place);
    return ReturnCode::Success;
}

} // namespace placesd
