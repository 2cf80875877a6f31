// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <pps.h>

namespace vela::platform::places
{

/// Owns one encoder of the platform's JSON codec.
class PPSEncoder
{
public:
    PPSEncoder() = default;
    PPSEncoder(const PPSEncoder &) = delete;
    PPSEncoder &operator=(const PPSEncoder &) = delete;
    ~PPSEncoder() { pps_encoder_cleanup(&m_encoder); }

    /// Initializes the encoder for a document; false on failure.
    bool init()
    {
        return pps_encoder_initialize(&m_encoder, true) == PPS_OK && pps_encoder_reset(&m_encoder) == PPS_OK;
    }
    /// The platform's own handle.
    pps_encoder_t *operator&() { return &m_encoder; }

private:
    pps_encoder_t m_encoder = {};
};

} // namespace vela::platform::places
