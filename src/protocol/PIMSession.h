// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ctime>
#include <mutex>
#include <string>

namespace orix_places_protocol
{

/// The key that tells the service which session a request belongs to. It comes from the platform's session object.
class PIMSession
{
public:
    static constexpr unsigned int REFRESH_INTERVAL_IN_SECONDS = 300;

    /// The key, empty when there is none. It is read anew when it is older than REFRESH_INTERVAL_IN_SECONDS; a failed
    /// read counts as one, so that a missing session object is not asked for with every request. Safe on any thread.
    static std::string getSessionKey();

private:
    static std::mutex mutex;
    // Guarded by the mutex.
    static std::string key;
    static unsigned int timestamp;
};

} // namespace orix_places_protocol
