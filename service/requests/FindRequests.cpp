// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "find/Finder.h"
#include "Limits.h"
#include "requests/Service.h"

namespace placesd
{

using namespace orix_places_protocol;

Service::Outcome Service::findPlaces(Request &request, Encoder &reply)
{
    Query query;
    if (!request.reader.readQuery(query))
        return request.reader.problem();
    if (query.count < 0 || query.count > limits::PAGE_SIZE || query.offset < 0)
        return ReturnCode::LimitExceeded;
    const int offset = query.offset;
    const PlaceSources sources{m_shared.providers, m_shared.contacts.get()};
    Finder finder(m_store, sources, std::move(query), request.caller.external, request.deadline);
    if (finder.takesLong() && m_pool != Pool::Slow)
        return Pool::Slow;
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

Service::Outcome Service::findPlacesSize(Request &request, Encoder &reply)
{
    Query query;
    if (!request.reader.readQuery(query))
        return request.reader.problem();
    const PlaceSources sources{m_shared.providers, m_shared.contacts.get()};
    Finder finder(m_store, sources, std::move(query), request.caller.external, request.deadline);
    if (finder.takesLong() && m_pool != Pool::Slow)
        return Pool::Slow;
    int count = 0;
    const ReturnCode code = finder.count(count);
    reply.encode(count);
    return code;
}

Service::Outcome Service::getRecentSearchTerms(Request &request, Encoder &reply)
{
    QString prefix;
    if (!request.reader.readTermPrefix(prefix))
        return request.reader.problem();
    reply.encodeQStringList(m_store.recentTerms(prefix));
    return ReturnCode::Success;
}

} // namespace placesd
