// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "requests/Service.h"

#include "Log.h"
#include "protocol/ReasonText.h"
#include "store/DatabaseFile.h"
#include "store/StorageReason.h"
#include "text/Utf8.h"

#include <algorithm>
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

/// A reason as sent to the client. It can contain paths, which are arbitrary bytes.
std::string sentForm(const std::string &reason)
{
    // Conversion never shortens the text, so this cut does not affect the result.
    const std::size_t read = std::min<std::size_t>(reason.size(), 2 * std::size_t{REASON_SIZE});
    std::string text = lineOf(reason.data(), static_cast<int>(read)).toStdString();
    std::size_t size = std::min<std::size_t>(text.size(), REASON_SIZE);
    while (size > 0 && size < text.size() && isContinuation(text[size]))
        --size;
    text.resize(size);
    return text;
}

Status tooLate()
{
    return {ReturnCode::TookTooLong, "the request waited in the queue until its deadline; try again"};
}

} // namespace

std::unique_ptr<PlacesAPIEncoder> statusReply(const Status &status, int requestType)
{
    auto reply = std::make_unique<PlacesAPIEncoder>();
    reply->encode(static_cast<int>(status.code));
    reply->encode(static_cast<int>(static_cast<unsigned int>(requestType) + REPLY_OFFSET));
    if (status.code != ReturnCode::Success && !status.reason.empty())
        reply->encodeString(sentForm(status.reason));
    return reply;
}

/// Handler of a request type, whether it is allowed on the open channel, and the pool that it always needs. A handler
/// can also request another pool itself.
struct Service::Entry
{
    MessageType type;
    Operation operation;
    bool external;
    Pool pool = Pool::Fast;
};

/// Whether every type has its entry, in the order of their numbers.
template <typename Entries>
constexpr bool isOrdered(const Entries &entries)
{
    for (std::size_t i = 0; i < entries.size(); ++i) {
        if (static_cast<std::size_t>(entries[i].type) != i + 1)
            return false;
    }
    return true;
}

const Service::Entry *Service::entryOf(int type)
{
    static constexpr std::array<Entry, static_cast<std::size_t>(LAST_MESSAGE_TYPE)> ENTRIES = {{
        {MessageType::AddPlace, &Service::addPlace, true, Pool::Writer},
        {MessageType::GetRecentSearchTerms, &Service::getRecentSearchTerms, false},
        {MessageType::GetAuxiliaryData, &Service::getAuxiliaryData, true},
        {MessageType::RemovePlace, &Service::removePlace, true, Pool::Writer},
        {MessageType::UpdatePlace, &Service::updatePlace, true, Pool::Writer},
        {MessageType::IncrementUsage, &Service::incrementUsage, true, Pool::Writer},
        {MessageType::AddTag, &Service::addTag, true, Pool::Writer},
        {MessageType::RemoveTag, &Service::removeTag, true, Pool::Writer},
        {MessageType::GetTags, &Service::getTags, true},
        {MessageType::GetPlaceFromContact, &Service::getPlaceFromContact, false},
        {MessageType::RemoveRecentlyPickedPlaces, &Service::clearRecentlyPicked, false, Pool::Writer},
        {MessageType::GetPlace, &Service::getPlace, true},
        {MessageType::FindPlaces, &Service::findPlaces, true},
        {MessageType::Unfav, &Service::unfav, true, Pool::Writer},
        {MessageType::Backup, &Service::backUp, false, Pool::Slow},
        {MessageType::Restore, &Service::restore, false, Pool::Slow},
        {MessageType::FindPlacesSize, &Service::findPlacesSize, true},
        {MessageType::GetPlaceFromSuggestion, &Service::getPlaceFromSuggestion, true, Pool::Slow},
        {MessageType::GetProviders, &Service::getProviders, true},
        {MessageType::GetHeaderFromFullPlace, &Service::getHeader, true},
    }};
    static_assert(isOrdered(ENTRIES), "an entry is found by the number of its type");
    const bool known = type >= 1 && type <= static_cast<int>(ENTRIES.size());
    return known ? &ENTRIES[static_cast<std::size_t>(type - 1)] : nullptr;
}

Service::Service(Shared &shared, Pool pool)
    : m_shared(shared)
    , m_pool(pool)
    , m_store(shared.database, shared.store)
{
    if (pool == Pool::Writer)
        m_store.useWriterCache();
}

Service::~Service()
{
    if (m_pool == Pool::Writer && m_shared.hasRemovedWords && !m_shared.store.damage->isDamaged())
        purgeRemovedWords(m_shared.database, Clock::now() + limits::PURGE_TIME);
}

Answer Service::answer(const char *bytes, unsigned int length, const Caller &caller, Deadline deadline,
                       std::size_t room)
{
    const _msgserver_data message = {bytes, length};
    const Deadline end = m_pool == Pool::Fast ? std::min(deadline, Clock::now() + limits::FAST_TIME) : deadline;
    Request request{RequestReader(&message), {}, caller, end, length, room};
    if (!request.reader.readHead(request.head))
        return {statusReply(request.reader.problem(), 0), m_pool};

    const int type = request.head.type;
    auto reply = statusReply(ReturnCode::Success, type);
    Outcome outcome = ReturnCode::TookTooLong;
    try {
        m_store.startRequest(end);
        outcome = hasPassed(deadline) ? tooLate() : perform(request, *reply);
    } catch (const SQLite::Exception &error) {
        outcome = failed(type, error, caller, deadline);
    } catch (const std::bad_alloc &) {
        outcome = Status(ReturnCode::LimitExceeded, "the service has not enough memory for such a request");
    }
    // Fast requests only read, so they can be run again.
    if (m_pool == Pool::Fast && outcome == Outcome(ReturnCode::TookTooLong) && !hasPassed(deadline))
        return {nullptr, Pool::Slow};
    if (const Pool *pool = std::get_if<Pool>(&outcome))
        return {nullptr, *pool};
    if (outcome != Outcome(ReturnCode::Success))
        reply = statusReply(std::get<Status>(outcome), type);
    m_shared.statistics.record(type, Clock::now() - (deadline - requestTime()));
    return {std::move(reply), m_pool};
}

bool Service::writeTogether(Deadline deadline, const std::function<bool()> &answerNext)
{
    try {
        m_store.startRequest(deadline);
        return m_store.write(
            [&] {
                while (m_store.isWriting() && answerNext()) {
                }
                // The deadline of a request does not apply to the commit.
                m_store.startRequest(Deadline::max());
                return m_store.isWriting();
            },
            Store::OnFullDisk::Fail);
    } catch (const SQLite::Exception &error) {
        // A full disk or damage is reported to each affected request when it runs alone.
        if (!isLackOfRoom(error) && !m_shared.store.damage->note(error))
            logError("requests in a common transaction failed and run again one by one: %s",
                     storageReason(m_shared.database, error).c_str());
        return false;
    } catch (const std::exception &error) {
        logError("requests in a common transaction failed and run again one by one: %s", error.what());
        return false;
    }
}

Service::Outcome Service::perform(Request &request, Encoder &reply)
{
    const Entry *entry = entryOf(request.head.type);
    if (!entry) {
        return Status(ReturnCode::NotUnderstood,
                      "this service does not support requests of type " + std::to_string(request.head.type));
    }
    if (Status status = admit(request, *entry); status != ReturnCode::Success)
        return status;
    if (entry->pool != Pool::Fast && m_pool == Pool::Fast)
        return entry->pool;
    std::unique_lock<std::timed_mutex> turn;
    if (m_pool != Pool::Writer && request.length > limits::LONG_REQUEST)
        turn = std::unique_lock(m_shared.longRequests[request.caller.external ? 1 : 0], request.deadline);
    if (turn.mutex() && !turn)
        return tooLate();
    return (this->*entry->operation)(request, reply);
}

Status Service::admit(const Request &request, const Entry &entry) const
{
    if (request.caller.external && !entry.external)
        return {ReturnCode::NotPermitted, "only the owner's channel, places, answers requests of this type"};
    if (!request.caller.external && !request.caller.trusted)
        return {ReturnCode::NotPermitted, "the places are another user's"};
    const std::string &key = m_shared.sessionKey;
    if (!key.empty() && request.head.sessionKey != key)
        return {ReturnCode::NotPermitted, "the session key is not that of the session object; read it again"};
    return ReturnCode::Success;
}

Status Service::failed(int type, const SQLite::Exception &error, const Caller &caller, Deadline deadline) const
{
    const ReturnCode code = codeOf(error);
    const std::string reason = storageReason(m_shared.database, error);
    if (isLackOfRoom(error))
        m_shared.store.reserve->report();
    else if (!m_shared.store.damage->note(error)
             && (code != ReturnCode::TookTooLong || hasPassed(deadline))) // otherwise another pool runs the request
        logError("request of type %d failed: %s", type, reason.c_str());
    return {code, caller.external ? std::string() : reason};
}

} // namespace placesd
