// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "protocol/PlacesAPIDecoder.h"
#include "requests/Service.h"

#include <cstddef>
#include <cstdint>

using namespace placesd;
using namespace orix_places_protocol;

/// Every request, whatever it is, gets a reply that starts with a status. What takes long is not done: among that are
/// backups, which would write files wherever the fuzzer says.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size)
{
    static Shared shared([] {
        Settings settings;
        settings.database = ":memory:";
        return settings;
    }());
    static Service service(shared, Patience::AnswersAtOnce);
    for (const bool external : {false, true}) {
        const auto reply = service.answer(reinterpret_cast<const char *>(bytes), static_cast<unsigned int>(size),
                                          Caller{external, true}, Clock::now() + shared.requestTime);
        if (!reply)
            continue;
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
