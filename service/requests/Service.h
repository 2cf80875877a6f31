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

/// The sender of a request.
struct Caller
{
    bool external = false; ///< By the open channel.
    bool trusted = false;  ///< The owner of the places, or root.
    uid_t user = 0;
};

/// Sorts by channel and user.
inline bool operator<(const Caller &a, const Caller &b)
{
    return std::make_pair(a.external, a.user) < std::make_pair(b.external, b.user);
}

/// Configuration of a service.
struct Settings
{
    std::string database;
    std::string sessionKey; ///< Required key of all requests; empty when none is required.
    std::vector<std::unique_ptr<PlaceProvider>> providers;
    std::unique_ptr<ContactBook> contacts;                        ///< Null when there are no contacts.
    std::chrono::milliseconds requestTime = limits::REQUEST_TIME; ///< From the arrival of a request to its answer.
    std::unique_ptr<DataVersion> version;                         ///< Null when clients are not notified of changes.
};

/// State shared by all services of a process.
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
    const std::unique_ptr<ContactBook> contacts; ///< May use a provider.
    const std::chrono::milliseconds requestTime;
    RequestStatistics statistics;
    std::atomic<bool> hasRemovedWords = false; ///< Since the start.
    StoreShared store;
    /// Serialize long requests per channel (owner, open), except on the writer thread: the objects made of a request
    /// need many times its bytes.
    std::array<std::timed_mutex, 2> longRequests;
    BackupKeeper backups{database, store};
};

/// Thread pools for requests.
enum class Pool
{
    Fast,  ///< Requests that only read the store.
    Slow,  ///< All requests, including those that wait for providers or copy the database.
    Writer ///< Requests that write and never wait for a provider. One thread.
};

/// A reply, or the pool that must run the request.
struct Answer
{
    std::unique_ptr<orix_places_protocol::PlacesAPIEncoder> reply; ///< Null when `pool` must run the request.
    Pool pool;
};

/// Starts a reply with its status. For a failure the reason follows the status, as one line of at most REASON_SIZE
/// bytes without control characters.
/// @param requestType 0 when it is unknown.
std::unique_ptr<orix_places_protocol::PlacesAPIEncoder> statusReply(const Status &status, int requestType = 0);

/// Answers requests one by one, on one database connection.
class Service
{
public:
    /// @param pool the pool of the thread that uses this service.
    Service(Shared &shared, Pool pool);
    /// The destructor of the writer's service removes remains of removed names from the database.
    ~Service();
    Service(const Service &) = delete;
    Service &operator=(const Service &) = delete;

    /// Time limit from the arrival of a request to its answer.
    [[nodiscard]] std::chrono::milliseconds requestTime() const { return m_shared.requestTime; }

    /// Runs a request. After its deadline it gets code 65.
    /// @param deadline the request's arrival plus requestTime().
    /// @param room bytes for the reply. A list is cut to fit; a single record may be longer.
    Answer answer(const char *request, unsigned int length, const Caller &caller, Deadline deadline, std::size_t room);

    /// Runs several requests in one transaction, each in its own savepoint: calls `answerNext`, which calls answer(),
    /// until it returns false. True when the transaction is on the disk. Otherwise nothing is stored, all answers are
    /// invalid, and the requests can be run again.
    /// @param deadline for acquiring the write lock.
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
        std::size_t length; ///< Of the request, in bytes.
        std::size_t room;   ///< For the reply, in bytes.
    };
    /// The status of a request, or the pool that must run it.
    using Outcome = std::variant<Status, Pool>;
    using Operation = Outcome (Service::*)(Request &, Encoder &);
    struct Entry;
    static const Entry *entryOf(int type);

    Outcome perform(Request &request, Encoder &reply);
    /// Whether the caller may send a request of this type with this key.
    Status admit(const Request &request, const Entry &entry) const;
    /// Logs a failure of SQLite and returns its outcome. Only the owner gets the reason, which contains paths and
    /// SQLite messages.
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

    /// Answers with the place that an external id identifies, stored or not.
    Outcome answerWith(const QString &externalId, const QString &type, const Coordinates &centre, Request &request,
                       Encoder &reply);
    Outcome answerWithContact(const QString &externalId, Request &request, Encoder &reply);
    /// Answers with the single place of a provider's answer, or with the equal stored place.
    Status answerWith(const ProvidersAnswer &answer, const Request &request, Encoder &reply);
    ReturnCode addRemoteData(const AuxiliaryQuery &query, const Place *place, Deadline deadline,
                             QList<vela::platform::places::AuxiliaryData> &found) const;

    /// Whether a request may read a stored place.
    Status permitPlace(qint64 id, const Request &request);
    static Status permitPlace(qint64 id, const Store::Standing &standing, const Request &request);
    /// Whether a request may change the place: on the open channel only the user who added it there.
    Status permitChange(qint64 id, const Request &request);
    /// Whether the place of a request can be stored; removes parts that are not stored.
    static Status acceptPlace(Place &place, const Request &request);
    /// Stores a search term of the owner's channel.
    void rememberTerm(const QString &term, const Request &request);
    /// Runs `work` as one write. Rolls it back when it fails, or when the open channel or one of its users would exceed
    /// the share.
    Status writeWithinShare(const Request &request, const std::function<Status()> &work);
    Status encodeStored(qint64 id, const Request &request, Encoder &reply);
    /// Reserves the reply's room in advance, so that it is not copied while it grows.
    static void makeRoom(Encoder &reply, const Request &request);
    /// Copies a stored record into a reply.
    static bool encodeRecord(Encoder &reply, const std::string &record);
    /// Changes a stored place in one transaction. Nothing is stored when `change` fails.
    using Change = std::function<Status(Place &)>;
    Status change(qint64 id, const Request &request, const Change &change);
    Status changeTag(Request &request, bool add);

    Shared &m_shared;
    const Pool m_pool;
    Store m_store;
};

} // namespace placesd
