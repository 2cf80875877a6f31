// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Limits.h"
#include "protocol/PlacesAPIEncoder.h"
#include "requests/RequestReader.h"
#include "sources/ContactBook.h"
#include "sources/Providers.h"
#include "store/Backup.h"
#include "store/Store.h"

#include <functional>
#include <memory>
#include <string>

namespace placesd
{

/// Who sent a request.
struct Caller
{
    bool external = false; ///< By the channel that is open to every application.
    bool trusted = false;  ///< The user whose places these are, or root.
};

/// What a service is given.
struct Settings
{
    std::string database;
    std::string sessionKey; ///< What every request has to carry; empty when none is asked for.
    std::vector<std::unique_ptr<PlaceProvider>> providers;
    std::unique_ptr<ContactBook> contacts;                        ///< Null where there are none.
    std::chrono::milliseconds requestTime = limits::REQUEST_TIME; ///< From a request's arrival to its answer.
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
    {}

    const std::string database;
    const std::string sessionKey;
    const Providers providers;
    const std::unique_ptr<ContactBook> contacts; ///< May ask a provider.
    const std::chrono::milliseconds requestTime;
    std::timed_mutex writeLock;
    BackupKeeper backups{database, writeLock};
};

/// Whether a service does what may take long, or leaves it to another.
enum class Patience
{
    AnswersAtOnce,
    MayWait
};

/// Answers requests, one after the other, on one connection to the store.
class Service
{
public:
    Service(Shared &shared, Patience patience);

    /// Longest time from a request's arrival to its answer.
    [[nodiscard]] std::chrono::milliseconds requestTime() const { return m_shared.requestTime; }

    /// The reply to a request, whatever that is; null when it takes a service that may wait.
    std::unique_ptr<orix_places_protocol::PlacesAPIEncoder> answer(const char *request, unsigned int length,
                                                                   const Caller &caller, Deadline deadline);

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
    };
    using Operation = ReturnCode (Service::*)(Request &, Encoder &);
    struct Entry;
    static const Entry *entryOf(int type);
    /// Says that a request takes a service that may wait. It is no answer.
    static constexpr auto FOR_THE_PATIENT = static_cast<ReturnCode>(-1);

    ReturnCode perform(Request &request, Encoder &reply);

    ReturnCode addPlace(Request &request, Encoder &reply);
    ReturnCode getRecentSearchTerms(Request &request, Encoder &reply);
    ReturnCode getAuxiliaryData(Request &request, Encoder &reply);
    ReturnCode removePlace(Request &request, Encoder &reply);
    ReturnCode updatePlace(Request &request, Encoder &reply);
    ReturnCode incrementUsage(Request &request, Encoder &reply);
    ReturnCode addTag(Request &request, Encoder &reply);
    ReturnCode removeTag(Request &request, Encoder &reply);
    ReturnCode getTags(Request &request, Encoder &reply);
    ReturnCode getPlaceFromContact(Request &request, Encoder &reply);
    ReturnCode clearRecentlyPicked(Request &request, Encoder &reply);
    ReturnCode getPlace(Request &request, Encoder &reply);
    ReturnCode getPlaceFromSuggestion(Request &request, Encoder &reply);
    ReturnCode findPlaces(Request &request, Encoder &reply);
    ReturnCode unfav(Request &request, Encoder &reply);
    ReturnCode backUp(Request &request, Encoder &reply);
    ReturnCode restore(Request &request, Encoder &reply);
    ReturnCode findPlacesSize(Request &request, Encoder &reply);
    ReturnCode getProviders(Request &request, Encoder &reply);
    ReturnCode getHeader(Request &request, Encoder &reply);

    /// Answers with the place that an external id stands for, stored or not.
    ReturnCode answerWith(const QString &externalId, const QString &type, const Coordinates &centre, Request &request,
                          Encoder &reply);
    ReturnCode answerWithContact(const QString &externalId, Request &request, Encoder &reply);
    /// Answers with the only place of a provider's answer, or with the stored place that it is.
    ReturnCode answerWith(const ProvidersAnswer &answer, const Request &request, Encoder &reply);
    ReturnCode addRemoteData(const AuxiliaryQuery &query, const Place *place, Deadline deadline,
                             QList<vela::platform::places::AuxiliaryData> &found) const;

    /// Whether a request may see or change a stored place.
    ReturnCode permitPlace(qint64 id, const Request &request);
    ReturnCode encodeStored(qint64 id, const Request &request, Encoder &reply);
    /// Puts a stored record into a reply as it is.
    static bool encodeRecord(Encoder &reply, const std::string &record);
    /// Changes a stored place in one transaction. When `change` fails nothing is stored.
    using Change = std::function<ReturnCode(Place &)>;
    ReturnCode change(qint64 id, const Request &request, const Change &change);
    ReturnCode changeTag(Request &request, bool add);

    Shared &m_shared;
    const Patience m_patience;
    Store m_store;
};

} // namespace placesd
