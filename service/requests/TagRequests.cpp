// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "model/PlacePrivate.h"
#include "requests/PlaceRules.h"
#include "requests/Service.h"

namespace placesd
{

using namespace orix_places_protocol;
using vela::platform::places::PlacePrivate;

Service::Outcome Service::addTag(Request &request, Encoder &)
{
    return changeTag(request, true);
}

Service::Outcome Service::removeTag(Request &request, Encoder &)
{
    return changeTag(request, false);
}

ReturnCode Service::changeTag(Request &request, bool add)
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

Service::Outcome Service::getTags(Request &, Encoder &reply)
{
    reply.encodeQStringList(m_store.tags());
    return ReturnCode::Success;
}

} // namespace placesd
