// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "find/Finder.h"
#include "Limits.h"
#include "requests/Service.h"

#include <algorithm>

namespace placesd
{

using namespace orix_places_protocol;

namespace
{

/// Bytes of a find's reply in addition to its records and their cursors.
constexpr std::size_t ROOM_FOR_REST = 64;

} // namespace

Service::Outcome Service::findPlaces(Request &request, Encoder &reply)
{
    Query query;
    if (!request.reader.readQuery(query))
        return request.reader.problem();
    query.perimeter = request.head.perimeter;
    if (query.count < 0 || query.count > limits::PAGE_SIZE || query.offset < 0)
        return Status(ReturnCode::LimitExceeded, "a page has at most " + std::to_string(limits::PAGE_SIZE)
                                                     + " places, and neither its size nor its offset is negative");
    const int offset = query.offset;
    const PlaceSources sources{m_shared.providers, m_shared.contacts.get()};
    Finder finder(m_store, sources, std::move(query), request.caller.external, request.deadline);
    if (finder.needsSlowPool() && m_pool != Pool::Slow)
        return Pool::Slow;
    Page page;
    page.room = request.room - std::min(request.room, ROOM_FOR_REST);
    if (Status status = finder.find(page); status != ReturnCode::Success)
        return status;

    reply.ensureBuffer(static_cast<unsigned int>(request.room - page.room), false);
    const auto count = static_cast<int>(page.records.size());
    reply.encode(count);
    for (std::string &record : page.records) {
        encodeRecord(reply, record);
        // Frees the record early: page and reply together need its memory only once.
        record = std::string();
    }
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

Service::Outcome Service::findPlacesSize(Request &request, Encoder &reply)
{
    Query query;
    if (!request.reader.readQuery(query))
        return request.reader.problem();
    query.perimeter = request.head.perimeter;
    const PlaceSources sources{m_shared.providers, m_shared.contacts.get()};
    Finder finder(m_store, sources, std::move(query), request.caller.external, request.deadline);
    if (finder.needsSlowPool() && m_pool != Pool::Slow)
        return Pool::Slow;
    int count = 0;
    Status status = finder.count(count);
    reply.encode(count);
    return status;
}

Service::Outcome Service::getRecentSearchTerms(Request &request, Encoder &reply)
{
    QString prefix;
    if (!request.reader.readTermPrefix(prefix))
        return request.reader.problem();
    makeRoom(reply, request);
    reply.encodeQStringList(m_store.recentTerms(prefix));
    return ReturnCode::Success;
}

} // namespace placesd
