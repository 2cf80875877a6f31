// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include <pps.h>

#include <cstddef>
#include <cstdint>
#include <string>

namespace
{

/// Reads every value in the innermost object or array as each possible type.
void walk(pps_decoder_t &decoder)
{
    const int count = pps_decoder_length(&decoder);
    for (int i = 0; i < count; ++i) {
        const char *text = nullptr;
        int number = 0;
        std::int64_t longNumber = 0;
        double real = 0;
        bool truth = false;
        // A successful read advances to the next element, so each read starts from the index again.
        const auto go = [&decoder, i] { pps_decoder_goto_index(&decoder, i); };
        go(), pps_decoder_get_int(&decoder, nullptr, &number);
        go(), pps_decoder_get_int64(&decoder, nullptr, &longNumber);
        go(), pps_decoder_get_double(&decoder, nullptr, &real);
        go(), pps_decoder_get_bool(&decoder, nullptr, &truth);
        go(), pps_decoder_get_string(&decoder, nullptr, &text);
        go();
        if (const char *name = pps_decoder_name(&decoder))
            pps_decoder_get_string(&decoder, std::string(name).c_str(), &text);
        go();
        if (pps_decoder_push(&decoder, nullptr) == PPS_OK) {
            walk(decoder);
            pps_decoder_pop(&decoder);
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size)
{
    std::string text(reinterpret_cast<const char *>(bytes), size);
    pps_decoder_t decoder;
    pps_decoder_initialize(&decoder, nullptr);
    if (pps_decoder_parse_json_str(&decoder, text.data()) == PPS_OK && pps_decoder_push(&decoder, nullptr) == PPS_OK)
        walk(decoder);
    pps_decoder_cleanup(&decoder);
    return 0;
}
