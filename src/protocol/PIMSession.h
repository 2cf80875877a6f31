// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ctime>
#include <mutex>
#include <string>

namespace orix_places_protocol
{

/// The key that identifies the session of a request. It is read from the platform's session object.
class PIMSession
{
public:
    static constexpr unsigned int REFRESH_INTERVAL_IN_SECONDS = 300;

    /// The key; empty when there is none. It is read again after REFRESH_INTERVAL_IN_SECONDS, also after a failure, so
    /// that a missing session object is not read for every request. Thread-safe.
    static std::string getSessionKey();

private:
    static std::mutex mutex;
    // Guarded by the mutex.
    static std::string key;
    static unsigned int timestamp;
};

} // namespace orix_places_protocol
