// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "requests/Service.h"

namespace placesd
{

using namespace orix_places_protocol;

Service::Outcome Service::backUp(Request &request, Encoder &)
{
    std::string path;
    return request.reader.readPath(path) ? m_shared.backups.backUp(path, request.deadline) : request.reader.problem();
}

Service::Outcome Service::restore(Request &request, Encoder &)
{
    std::string path;
    return request.reader.readPath(path) ? m_shared.backups.restore(path, request.deadline) : request.reader.problem();
}

} // namespace placesd
