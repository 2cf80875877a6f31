// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>

/// A temporary disturbance, such as a full disk, which excuses failures in the meantime. Call begin() and end() on one
/// thread; the other functions are safe on any thread.
class Disturbance
{
public:
    void begin() { ++m_changes; }
    void end() { ++m_changes; }

    /// The current time, for wasThereSince().
    [[nodiscard]] unsigned now() const { return m_changes; }
    [[nodiscard]] bool wasThereSince(unsigned start) const { return start % 2 == 1 || m_changes != start; }

private:
    std::atomic<unsigned> m_changes{0}; ///< Odd during the disturbance.
};
