// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "requests/Service.h"

#include "Log.h"

#include <array>

#include <msgclient.h>
#include <sqlite3.h>

namespace placesd
{

using namespace orix_places_protocol;

namespace
{

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

} // namespace placesd
