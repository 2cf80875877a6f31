// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "protocol/PlacesAPIDecoder.h"
#include "Service.h"

#include <cstddef>
#include <cstdint>
#include <mutex>

using namespace placesd;
using namespace orix_places_protocol;

/// Every request, whatever it is, gets a reply that starts with a status.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size)
{
    static std::mutex writeLock;
    static Service service(":memory:", writeLock, {});
    for (const bool external : {false, true}) {
        const auto reply = service.answer(reinterpret_cast<const char *>(bytes), static_cast<unsigned int>(size),
                                          Caller{external, true});
        char *data = nullptr;
        int length = 0;
        reply->getData(data, length);
        PlacesAPIDecoder decoder(data, static_cast<unsigned int>(length));
        ReturnCode code = ReturnCode::NoStatus;
        if (!decoder.decodeResponse(code))
            __builtin_trap();
    }
    return 0;
}
