// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>

/// Something that comes and goes, such as a full disk, and excuses what happened meanwhile. begin() and end() on one
/// thread; the rest is safe on any.
class Disturbance
{
public:
    void begin() { ++m_changes; }
    void end() { ++m_changes; }

    /// A point in time for wasThereSince().
    [[nodiscard]] unsigned now() const { return m_changes; }
    [[nodiscard]] bool wasThereSince(unsigned start) const { return start % 2 == 1 || m_changes != start; }

private:
    std::atomic<unsigned> m_changes{0}; ///< Odd while it is there.
};
