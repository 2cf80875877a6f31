// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "model/PlacePrivate.h"
#include "requests/PlaceRules.h"
#include "requests/Service.h"
#include "store/Sql.h"

#include <algorithm>

namespace placesd
{

using namespace orix_places_protocol;
using vela::platform::places::PlacePrivate;

namespace
{

/// Bytes of a reply in addition to its texts, and for each text.
constexpr std::size_t ROOM_FOR_REST = 16;
constexpr std::size_t ROOM_FOR_LENGTH = 8;

} // namespace

Service::Outcome Service::addTag(Request &request, Encoder &)
{
    return changeTag(request, true);
}

Service::Outcome Service::removeTag(Request &request, Encoder &)
{
    return changeTag(request, false);
}

Status Service::changeTag(Request &request, bool add)
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

/// Tags are sent as they are stored, so each is in memory once only: first count the tags that fit, then write them.
Service::Outcome Service::getTags(Request &request, Encoder &reply)
{
    const auto snapshot = m_store.snapshot();
    const auto row = m_store.statements().take(request.caller.external ? sql::SELECT_OPEN_TEXTS : sql::SELECT_TEXTS);
    row->bind(1, static_cast<int>(FacetKind::Tag));
    if (request.caller.external)
        row->bind(2, static_cast<int>(request.head.perimeter));
    int count = 0;
    std::size_t size = ROOM_FOR_REST;
    while (row->executeStep()) {
        size += static_cast<std::size_t>(row->getColumn(0).getBytes()) + ROOM_FOR_LENGTH;
        if (size > request.room)
            break;
        ++count;
    }
    reply.ensureBuffer(static_cast<unsigned int>(std::min(size, request.room)), false);
    reply.encode(count);
    row->reset();
    while (count-- > 0 && row->executeStep()) {
        const SQLite::Column tag = row->getColumn(0);
        const auto length = static_cast<unsigned int>(tag.getBytes());
        reply.encode(length);
        reply.encodeCharArray(tag.getText(), length);
    }
    return ReturnCode::Success;
}

} // namespace placesd
