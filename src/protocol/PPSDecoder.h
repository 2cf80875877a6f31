// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <pps.h>

namespace vela::platform::places
{

/// Owns one decoder of the platform's JSON codec.
class PPSDecoder
{
public:
    PPSDecoder() = default;
    PPSDecoder(const PPSDecoder &) = delete;
    PPSDecoder &operator=(const PPSDecoder &) = delete;
    ~PPSDecoder() { pps_decoder_cleanup(&m_decoder); }

    /// Initializes the decoder; false on failure.
    bool init() { return pps_decoder_initialize(&m_decoder, nullptr) == PPS_OK; }
    /// The platform's own handle.
    pps_decoder_t *operator&() { return &m_decoder; }

    /// Enters a member, or the current element for a null name, and leaves it at the end of the scope.
    class PushResourceManager
    {
    public:
        PushResourceManager(PPSDecoder &decoder, const char *name)
            : PushResourceManager(decoder.m_decoder, name)
        {}
        PushResourceManager(pps_decoder_t &decoder, const char *name)
            : m_decoder(decoder)
            , m_entered(pps_decoder_push(&decoder, name) == PPS_OK)
        {}
        PushResourceManager(const PushResourceManager &) = delete;
        PushResourceManager &operator=(const PushResourceManager &) = delete;
        ~PushResourceManager()
        {
            if (m_entered)
                pps_decoder_pop(&m_decoder);
        }
        [[nodiscard]] bool isEntered() const { return m_entered; }

    private:
        pps_decoder_t &m_decoder;
        bool m_entered;
    };

private:
    pps_decoder_t m_decoder = {};
};

} // namespace vela::platform::places
