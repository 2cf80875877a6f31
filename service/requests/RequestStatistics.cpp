// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "requests/RequestStatistics.h"

#include "protocol/ProtocolTypes.h"

namespace placesd
{

using orix_places_protocol::LAST_MESSAGE_TYPE;

namespace
{

/// Number of bits for the message type.
constexpr int TYPE_BITS = 8;

} // namespace

void RequestStatistics::record(int type, Clock::duration time)
{
    ++m_count;
    const bool isKnown = type >= 1 && type <= static_cast<int>(LAST_MESSAGE_TYPE);
    const auto microseconds = std::chrono::duration_cast<std::chrono::microseconds>(time).count();
    const std::uint64_t packed =
        (static_cast<std::uint64_t>(microseconds) << TYPE_BITS) | static_cast<std::uint64_t>(isKnown ? type : 0);
    std::uint64_t slowest = m_slowest;
    while (slowest < packed && !m_slowest.compare_exchange_weak(slowest, packed)) {
    }
}

std::uint64_t RequestStatistics::countOfLastMinute()
{
    const Clock::time_point now = Clock::now();
    m_counts.emplace_back(now, m_count);
    while (m_counts.size() > 1 && m_counts.front().first < now - std::chrono::minutes(1))
        m_counts.pop_front();
    return m_counts.back().second - m_counts.front().second;
}

RequestStatistics::Slowest RequestStatistics::slowest() const
{
    const std::uint64_t packed = m_slowest;
    return {static_cast<int>(packed & ((1U << TYPE_BITS) - 1)), std::chrono::microseconds(packed >> TYPE_BITS)};
}

} // namespace placesd
