// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "OneProcessor.h"

#include <cstddef>

namespace bench
{

OneProcessor::OneProcessor()
{
    ::sched_getaffinity(0, sizeof m_before, &m_before);
    // The last one: the first one often handles interrupts.
    std::size_t last = CPU_SETSIZE - 1;
    while (last > 0 && !CPU_ISSET(last, &m_before))
        --last;
    cpu_set_t one;
    CPU_ZERO(&one);
    CPU_SET(last, &one);
    ::sched_setaffinity(0, sizeof one, &one);
}

OneProcessor::~OneProcessor()
{
    ::sched_setaffinity(0, sizeof m_before, &m_before);
}

} // namespace bench
