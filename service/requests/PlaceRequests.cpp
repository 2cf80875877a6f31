// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "model/PlacePrivate.h"
#include "places/Tags.h"
#include "requests/PlaceRules.h"
#include "requests/Service.h"

#include <algorithm>
#include <limits>

namespace placesd
{

using namespace orix_places_protocol;
using vela::platform::places::PlaceId;
using vela::platform::places::PlacePrivate;
namespace Tags = vela::platform::places::Tags;

namespace
{

const char *const BEYOND_SHARE =
    "the quota of your places, or of all places of the open channel, is used up; remove some";

/// The same answer for a missing place and for one that the sender may not see.
Status noSuchPlace(qint64 id)
{
    return {ReturnCode::NoSuchPlace, "no place has the id " + std::to_string(id)};
}

bool isBeyondShare(const Store::Shares &shares, qint64 morePlaces = 0, qint64 moreBytes = 0)
{
    const auto isBeyond = [=](const Store::Share &share, qint64 places, qint64 bytes) {
        return share.places + morePlaces > places || share.bytes + moreBytes > bytes;
    };
    return isBeyond(shares.user, limits::OPEN_USER_PLACES, limits::OPEN_USER_BYTES)
           || isBeyond(shares.all, limits::OPEN_PLACES, limits::OPEN_BYTES);
}

} // namespace

Service::Outcome Service::addPlace(Request &request, Encoder &reply)
{
    std::unique_ptr<Place> place;
    if (!request.reader.readPlace(place))
        return request.reader.problem();
    if (place->isPersisted())
        return Status(ReturnCode::AlreadyStored,
                      "the place has the id " + std::to_string(place->id()) + "; update it, or add it without an id");
    PlacePrivate &data = *PlacePrivate::privateFromPublic(place.get());
    if (Status problem = acceptPlace(*place, request); problem != ReturnCode::Success)
        return problem;

    if (Status problem = permit(request.head.perimeter, data.securityPerimeter()); problem != ReturnCode::Success)
        return problem;

    // Check the room early: a record is about as long as the request.
    if (request.caller.external
        && isBeyondShare(m_store.sharesOf(request.caller.user), 1, static_cast<qint64>(request.length)))
        return Status(ReturnCode::LimitExceeded, BEYOND_SHARE);
    data.setCreatedTime(now());
    data.setUpdatedTime(data.createdTime());
    // Picking a place counts as a use, so that it comes first in the recent bucket.
    if (data.persistenceMask() == PlacePrivate::InRecentBucket && data.lastUsedTime() == 0)
        data.setLastUsedTime(data.createdTime());
    const QString term = data.takeSearchTerm();
    Status status = writeWithinShare(request, [&] {
        rememberTerm(term, request);
        m_store.insert(*place, request.caller.external ? std::optional(request.caller.user) : std::nullopt);
        return ReturnCode::Success;
    });
    reply.encode(place->id());
    return status;
}

Service::Outcome Service::updatePlace(Request &request, Encoder &)
{
    std::unique_ptr<Place> place;
    if (!request.reader.readPlace(place))
        return request.reader.problem();
    PlacePrivate &fresh = *PlacePrivate::privateFromPublic(place.get());
    if (Status problem = acceptPlace(*place, request); problem != ReturnCode::Success)
        return problem;

    const QString term = fresh.takeSearchTerm();
    return change(place->id(), request, [&](Place &stored) {
        PlacePrivate &data = *PlacePrivate::privateFromPublic(&stored);
        rememberTerm(term, request);
        // The recent bucket belongs to the owner.
        if (request.caller.external && data.isInRecentBucket())
            fresh.setPersistenceMask(fresh.persistenceMask() | PlacePrivate::InRecentBucket);
        // Keep the values that the service counts: the sender may have older ones.
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
    // Do not decode the place, so that an unreadable place can be removed.
    Status status = ReturnCode::Success;
    m_shared.hasRemovedWords = true;
    m_store.write(
        [&] {
            status = permitChange(id, request);
            return status == ReturnCode::Success && m_store.remove(id);
        },
        Store::OnFullDisk::UseReserve);
    return status;
}

Service::Outcome Service::incrementUsage(Request &request, Encoder &)
{
    qint64 id = -1;
    QString searchTerm;
    if (!request.reader.readIdAndText(id, searchTerm))
        return request.reader.problem();
    return change(id, request, [&](Place &place) {
        PlacePrivate &data = *PlacePrivate::privateFromPublic(&place);
        rememberTerm(searchTerm, request);
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
    // Only the tag is removed.
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
    const std::vector<qint64> bucket = m_store.recentBucket();
    const auto take = [this](auto begin, auto end, Store::OnFullDisk onFullDisk) {
        const auto takeEach = [=] {
            std::for_each(begin, end, [this](qint64 id) { m_store.takeFromRecentBucket(id); });
            return true;
        };
        m_store.write(takeEach, onFullDisk);
    };
    const bool isPart = m_store.isWriting();
    try {
        take(bucket.begin(), bucket.end(), Store::OnFullDisk::Fail);
        return ReturnCode::Success;
    } catch (const SQLite::Exception &error) {
        if (isPart || !isLackOfRoom(error))
            throw;
    }
    for (auto next = bucket.begin(); next != bucket.end();) {
        const auto end = next + std::min(limits::BUCKET_PIECE, bucket.end() - next);
        take(next, end, Store::OnFullDisk::UseReserve);
        next = end;
    }
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
    Outcome outcome = id == PlaceId::UNDEFINED_PERSISTED_ID
                          ? answerWith(externalId, type, Coordinates(), request, reply)
                          : encodeStored(id, request, reply);
    // The request is in ISO 8859-1; "?" may replace another character.
    const bool isTerm = !searchTerm.isEmpty() && !searchTerm.contains(QLatin1Char('?'));
    if (outcome != Outcome(ReturnCode::Success) || !isTerm || request.caller.external)
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

Status Service::permitPlace(qint64 id, const Request &request)
{
    const std::optional<Store::Standing> standing = m_store.standingOf(id);
    return standing ? permitPlace(id, *standing, request) : noSuchPlace(id);
}

Status Service::permitPlace(qint64 id, const Store::Standing &standing, const Request &request)
{
    const bool isKnown = !request.caller.external || standing.isOpen();
    return isKnown ? permit(request.head.perimeter, standing.perimeter) : noSuchPlace(id);
}

Status Service::permitChange(qint64 id, const Request &request)
{
    const std::optional<Store::Standing> standing = m_store.standingOf(id);
    Status status = standing ? permitPlace(id, *standing, request) : noSuchPlace(id);
    const bool isOwn = !request.caller.external || (standing && standing->guest == request.caller.user);
    if (status == ReturnCode::Success && !isOwn)
        return {ReturnCode::NotPermitted, "the open channel changes only places that you added by it"};
    return status;
}

Status Service::acceptPlace(Place &place, const Request &request)
{
    PlacePrivate &data = *PlacePrivate::privateFromPublic(&place);
    dropUnstoredParts(data);
    Status status = accept(data);
    return status == ReturnCode::Success && request.caller.external ? acceptFromGuest(data) : status;
}

void Service::rememberTerm(const QString &term, const Request &request)
{
    if (!request.caller.external)
        m_store.rememberTerm(term);
}

Status Service::writeWithinShare(const Request &request, const std::function<Status()> &work)
{
    Status status = ReturnCode::Success;
    m_store.write([&] {
        if (!request.caller.external)
            return (status = work()) == ReturnCode::Success;
        const qint64 before = m_store.sharesOf(request.caller.user).user.bytes;
        status = work();
        // The owner may have enlarged a place beyond the share; a change that does not grow it further is allowed.
        const Store::Shares after = m_store.sharesOf(request.caller.user);
        if (status == ReturnCode::Success && after.user.bytes > before && isBeyondShare(after))
            status = {ReturnCode::LimitExceeded, BEYOND_SHARE};
        return status == ReturnCode::Success;
    });
    return status;
}

Status Service::change(qint64 id, const Request &request, const Change &change)
{
    return writeWithinShare(request, [&]() -> Status {
        if (Status problem = permitChange(id, request); problem != ReturnCode::Success)
            return problem;
        const std::unique_ptr<Place> before = m_store.place(id);
        const std::unique_ptr<Place> after = m_store.place(id);
        Status status = change(*after);
        if (status == ReturnCode::Success)
            m_store.update(*after, *before);
        return status;
    });
}

Status Service::encodeStored(qint64 id, const Request &request, Encoder &reply)
{
    const std::optional<Store::StoredPlace> place = m_store.storedPlace(id);
    if (!place)
        return noSuchPlace(id);
    Status status = permitPlace(id, place->standing, request);
    if (status == ReturnCode::Success)
        encodeRecord(reply, place->fullRecord);
    return status;
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
