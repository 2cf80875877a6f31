// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "model/PlacePrivate.h"
#include "places/Tags.h"
#include "requests/PlaceRules.h"
#include "requests/Service.h"

#include <limits>

namespace placesd
{

using namespace orix_places_protocol;
using vela::platform::places::PlaceId;
using vela::platform::places::PlacePrivate;
namespace Tags = vela::platform::places::Tags;

Service::Outcome Service::addPlace(Request &request, Encoder &reply)
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

Service::Outcome Service::updatePlace(Request &request, Encoder &)
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
        m_shared.hasRemovedWords = true;
        data = fresh;
        return ReturnCode::Success;
    });
}

Service::Outcome Service::removePlace(Request &request, Encoder &)
{
    qint64 id = -1;
    if (!request.reader.readId(id))
        return request.reader.problem();
    // The place itself is not looked at: one that cannot be read can be removed all the same.
    ReturnCode code = ReturnCode::Success;
    m_shared.hasRemovedWords = true;
    m_store.write([&] {
        code = permitPlace(id, request);
        return code == ReturnCode::Success && m_store.remove(id);
    });
    return code;
}

Service::Outcome Service::incrementUsage(Request &request, Encoder &)
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

Service::Outcome Service::unfav(Request &request, Encoder &reply)
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

Service::Outcome Service::clearRecentlyPicked(Request &, Encoder &)
{
    m_shared.hasRemovedWords = true;
    m_store.write([this] { return m_store.clearRecentBucket(), true; });
    return ReturnCode::Success;
}

Service::Outcome Service::getPlace(Request &request, Encoder &reply)
{
    qint64 id = -1;
    QString externalId;
    QString type;
    QString searchTerm;
    if (!request.reader.readGetPlace(id, externalId, type, searchTerm))
        return request.reader.problem();
    const Outcome outcome = id == PlaceId::UNDEFINED_PERSISTED_ID
                                ? answerWith(externalId, type, Coordinates(), request, reply)
                                : encodeStored(id, request, reply);
    if (outcome != Outcome(ReturnCode::Success) || searchTerm.isEmpty())
        return outcome;
    if (m_pool == Pool::Fast)
        return Pool::Writer;
    m_store.write([&] { return m_store.rememberTerm(searchTerm), true; });
    return outcome;
}

Service::Outcome Service::getHeader(Request &request, Encoder &reply)
{
    std::unique_ptr<Place> place;
    if (!request.reader.readPlace(place))
        return request.reader.problem();
    makeRoom(reply, request);
    reply.encodePlaceHeader(*place);
    return ReturnCode::Success;
}

ReturnCode Service::permitPlace(qint64 id, const Request &request)
{
    const std::optional<Store::Standing> standing = m_store.standingOf(id);
    return standing ? permitPlace(*standing, request) : ReturnCode::NoSuchPlace;
}

ReturnCode Service::permitPlace(const Store::Standing &standing, const Request &request)
{
    // The external channel knows only what was saved.
    const bool isKnown = !request.caller.external || (standing.persistenceMask & PlacePrivate::ExplicitlySaved) != 0;
    return isKnown ? permit(request.head.perimeter, standing.perimeter) : ReturnCode::NoSuchPlace;
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

ReturnCode Service::encodeStored(qint64 id, const Request &request, Encoder &reply)
{
    const std::optional<Store::StoredPlace> place = m_store.storedPlace(id);
    if (!place)
        return ReturnCode::NoSuchPlace;
    const ReturnCode code = permitPlace(place->standing, request);
    if (code == ReturnCode::Success)
        encodeRecord(reply, place->fullRecord);
    return code;
}

void Service::makeRoom(Encoder &reply, const Request &request)
{
    reply.ensureBuffer(static_cast<unsigned int>(request.room), false);
}

bool Service::encodeRecord(Encoder &reply, const std::string &record)
{
    const auto size = static_cast<unsigned int>(record.size());
    return reply.ensureBuffer(size, true) && reply.encodeCharArray(record.data(), size);
}

} // namespace placesd
