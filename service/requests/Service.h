// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Limits.h"
#include "protocol/PlacesAPIEncoder.h"
#include "requests/RequestReader.h"
#include "requests/RequestStatistics.h"
#include "sources/ContactBook.h"
#include "sources/Providers.h"
#include "Status.h"
#include "store/Backup.h"
#include "store/Store.h"

#include <array>
#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <variant>

#include <sys/types.h>

namespace placesd
{

/// Who sent a request.
struct Caller
{
    bool external = false; ///< By the channel that is open to every application.
    bool trusted = false;  ///< The user whose places these are, or root.
    uid_t user = 0;
};

/// Orders the users of each channel.
inline bool operator<(const Caller &a, const Caller &b)
{
    return std::make_pair(a.external, a.user) < std::make_pair(b.external, b.user);
}

/// What a service is given.
struct Settings
{
    std::string database;
    std::string sessionKey; ///< What every request has to carry; empty when none is asked for.
    std::vector<std::unique_ptr<PlaceProvider>> providers;
    std::unique_ptr<ContactBook> contacts;                        ///< Null where there are none.
    std::chrono::milliseconds requestTime = limits::REQUEST_TIME; ///< From a request's arrival to its answer.
    std::unique_ptr<DataVersion> version;                         ///< Null where clients are told of no change.
};

/// What all services of a process share.
struct Shared
{
    explicit Shared(Settings settings)
        : database(std::move(settings.database))
        , sessionKey(std::move(settings.sessionKey))
        , providers(std::move(settings.providers))
        , contacts(std::move(settings.contacts))
        , requestTime(settings.requestTime)
    {
        store.keepsOldVersion = true;
        store.reserve.emplace(database);
        store.damage.emplace(database);
        store.version = std::move(settings.version);
    }

    const std::string database;
    const std::string sessionKey;
    const Providers providers;
    const std::unique_ptr<ContactBook> contacts; ///< May ask a provider.
    const std::chrono::milliseconds requestTime;
    RequestStatistics statistics;
    std::atomic<bool> hasRemovedWords = false; ///< Since the start.
    StoreShared store;
    /// Long requests of the owner's channel and of the open one take turns, but for those of the writer: the values
    /// that are made of a request take many times its bytes.
    std::array<std::timed_mutex, 2> longRequests;
    BackupKeeper backups{database, store};
};

/// The thread pools that run requests.
enum class Pool
{
    Fast,  ///< Requests that read the store.
    Slow,  ///< All requests, also those that wait for providers or copy the database.
    Writer ///< Requests that write and never wait for a provider. One thread.
};

/// A reply, or the pool that has to run the request in place of the one that tried.
struct Answer
{
    std::unique_ptr<orix_places_protocol::PlacesAPIEncoder> reply; ///< Null when `pool` has to run the request.
    Pool pool;
};

/// A reply that says how a request ended, and nothing else yet. A failed one has the reason behind the status, as one
/// line of at most REASON_SIZE bytes without control characters.
/// @param requestType 0 where that is not known.
std::unique_ptr<orix_places_protocol::PlacesAPIEncoder> statusReply(const Status &status, int requestType = 0);

/// Answers requests, one after the other, on one connection to the store.
class Service
{
public:
    /// @param pool the pool whose threads use this service.
    Service(Shared &shared, Pool pool);
    /// The writer's takes what is left of removed names out of the database.
    ~Service();
    Service(const Service &) = delete;
    Service &operator=(const Service &) = delete;

    /// Longest time from a request's arrival to its answer.
    [[nodiscard]] std::chrono::milliseconds requestTime() const { return m_shared.requestTime; }

    /// Runs a request. One whose deadline has passed gets code 65.
    /// @param deadline the request's arrival plus requestTime().
    /// @param room bytes that the reply may take. A list ends early for it; a single record may be longer.
    Answer answer(const char *request, unsigned int length, const Caller &caller, Deadline deadline, std::size_t room);

    /// Runs several requests in one transaction, each in a savepoint of its own: calls `answerNext`, which calls
    /// answer(), until it returns false. True when all of it is on the disk. Otherwise nothing of it is stored, none of
    /// the answers holds, and the requests can be run again.
    /// @param deadline longest wait for other writers.
    bool writeTogether(Deadline deadline, const std::function<bool()> &answerNext);

private:
    using Encoder = orix_places_protocol::PlacesAPIEncoder;
    using ReturnCode = orix_places_protocol::ReturnCode;
    using Coordinates = vela::platform::places::Coordinates;
    using Place = vela::platform::places::Place;

    struct Request
    {
        RequestReader reader;
        RequestHead head;
        Caller caller;
        Deadline deadline;
        std::size_t length; ///< Bytes of the request.
        std::size_t room;   ///< For the reply, in bytes.
    };
    /// How the request ended, or the pool that has to run it.
    using Outcome = std::variant<Status, Pool>;
    using Operation = Outcome (Service::*)(Request &, Encoder &);
    struct Entry;
    static const Entry *entryOf(int type);

    Outcome perform(Request &request, Encoder &reply);
    /// Whether the caller may make a request of this type, with this key.
    Status admit(const Request &request, const Entry &entry) const;
    /// The outcome of a request that SQLite failed, which goes to the log. Only the owner gets the reason: paths and
    /// words of SQLite are in it.
    Status failed(int type, const SQLite::Exception &error, const Caller &caller, Deadline deadline) const;

    Outcome addPlace(Request &request, Encoder &reply);
    Outcome getRecentSearchTerms(Request &request, Encoder &reply);
    Outcome getAuxiliaryData(Request &request, Encoder &reply);
    Outcome removePlace(Request &request, Encoder &reply);
    Outcome updatePlace(Request &request, Encoder &reply);
    Outcome incrementUsage(Request &request, Encoder &reply);
    Outcome addTag(Request &request, Encoder &reply);
    Outcome removeTag(Request &request, Encoder &reply);
    Outcome getTags(Request &request, Encoder &reply);
    Outcome getPlaceFromContact(Request &request, Encoder &reply);
    Outcome clearRecentlyPicked(Request &request, Encoder &reply);
    Outcome getPlace(Request &request, Encoder &reply);
    Outcome getPlaceFromSuggestion(Request &request, Encoder &reply);
    Outcome findPlaces(Request &request, Encoder &reply);
    Outcome unfav(Request &request, Encoder &reply);
    Outcome backUp(Request &request, Encoder &reply);
    Outcome restore(Request &request, Encoder &reply);
    Outcome findPlacesSize(Request &request, Encoder &reply);
    Outcome getProviders(Request &request, Encoder &reply);
    Outcome getHeader(Request &request, Encoder &reply);

    /// Answers with the place that an external id stands for, stored or not.
    Outcome answerWith(const QString &externalId, const QString &type, const Coordinates &centre, Request &request,
                       Encoder &reply);
    Outcome answerWithContact(const QString &externalId, Request &request, Encoder &reply);
    /// Answers with the only place of a provider's answer, or with the stored place that it is.
    Status answerWith(const ProvidersAnswer &answer, const Request &request, Encoder &reply);
    ReturnCode addRemoteData(const AuxiliaryQuery &query, const Place *place, Deadline deadline,
                             QList<vela::platform::places::AuxiliaryData> &found) const;

    /// Whether a request may see a stored place.
    Status permitPlace(qint64 id, const Request &request);
    static Status permitPlace(qint64 id, const Store::Standing &standing, const Request &request);
    /// Whether it may change the place: by the open channel only users who added it there.
    Status permitChange(qint64 id, const Request &request);
    /// Whether a place that a request brings can be stored; drops what is not stored.
    static Status acceptPlace(Place &place, const Request &request);
    /// Keeps a search term of the owner's channel.
    void rememberTerm(const QString &term, const Request &request);
    /// Runs `work`, which may store more, as one write. Takes it back when it fails, or when the open channel or one of
    /// its users then have more than their share.
    Status writeWithinShare(const Request &request, const std::function<Status()> &work);
    Status encodeStored(qint64 id, const Request &request, Encoder &reply);
    /// Lets a reply grow to the room that it may take without being copied at each step.
    static void makeRoom(Encoder &reply, const Request &request);
    /// Puts a stored record into a reply as it is.
    static bool encodeRecord(Encoder &reply, const std::string &record);
    /// Changes a stored place in one transaction. When `change` fails nothing is stored.
    using Change = std::function<Status(Place &)>;
    Status change(qint64 id, const Request &request, const Change &change);
    Status changeTag(Request &request, bool add);

    Shared &m_shared;
    const Pool m_pool;
    Store m_store;
};

} // namespace placesd
