// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "protocol/PlacesAPIDecoder.h"
#include "protocol/PlacesAPIEncoder.h"

#include <msgclient.h>

#include <string>

namespace vela::platform::places
{

/// Sends one request to the places service and receives its reply. Thread-safe: every exchange has its own channel.
class ClientProtocol
{
public:
    virtual ~ClientProtocol();

    /// True when this process may open the channel for applications of the platform.
    static bool isInternalPathAccessible();

    /// Sends a request and receives the reply; `reply` is then positioned after its status. Returns the service's code,
    /// or TransportFailed, NotPermitted or NoService. No retries.
    /// @param replyCapacity bytes reserved for the reply; a longer one is received too.
    orix_places_protocol::ReturnCode sendMessage(const orix_places_protocol::PlacesAPIEncoder &request,
                                                 orix_places_protocol::PlacesAPIDecoder &reply, int replyCapacity);

    /// Name of a channel instead of the service's own; empty for none.
    static std::string OVERIDED_CSM_NAME;

protected:
    /// Owns one open channel.
    class Mop
    {
    public:
        Mop() = default;
        Mop(const Mop &) = delete;
        Mop &operator=(const Mop &) = delete;
        ~Mop()
        {
            if (m_channel)
                msgclient_close(m_channel);
        }
        Mop &operator=(_msgclient_open *channel)
        {
            m_channel = channel;
            return *this;
        }
        bool operator==(const _msgclient_open *channel) const { return m_channel == channel; }
        [[nodiscard]] _msgclient_open *get() const { return m_channel; }

    private:
        _msgclient_open *m_channel = nullptr;
    };
};

} // namespace vela::platform::places
