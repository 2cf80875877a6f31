// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "protocol/PlacesAPIDecoder.h"
#include "requests/Service.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

using namespace placesd;
using namespace orix_places_protocol;

namespace
{

/// A service on an in-memory database. It needs no reserved disk space.
Service &service()
{
    static Shared shared([] {
        Settings settings;
        settings.database = ":memory:";
        return settings;
    }());
    static Service service((shared.store.reserve.reset(), shared), Pool::Writer);
    return service;
}

/// True when a request would write files at a path from the fuzzer.
bool namesFile(const std::uint8_t *bytes, std::size_t size)
{
    int type = 0;
    std::memcpy(&type, bytes, std::min(size, sizeof type));
    return type == static_cast<int>(MessageType::Backup) || type == static_cast<int>(MessageType::Restore);
}

} // namespace

/// Every request gets a reply that starts with a status.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size)
{
    if (namesFile(bytes, size))
        return 0;
    for (const bool external : {false, true}) {
        Caller caller{};
        caller.external = external;
        caller.trusted = true;
        const Answer answer = service().answer(reinterpret_cast<const char *>(bytes), static_cast<unsigned int>(size),
                                               caller, Clock::now() + limits::REQUEST_TIME, limits::REPLY_SIZE);
        if (!answer.reply)
            continue;
        char *data = nullptr;
        int length = 0;
        answer.reply->getData(data, length);
        PlacesAPIDecoder decoder(data, static_cast<unsigned int>(length));
        ReturnCode code = ReturnCode::NoStatus;
        if (!decoder.decodeResponse(code))
            __builtin_trap();
    }
    return 0;
}
