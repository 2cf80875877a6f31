// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

namespace bench
{

/// SplitMix64: the same seed gives the same numbers with every standard library.
class Random
{
public:
    explicit Random(std::uint64_t seed)
        : m_state(seed)
    {}

    /// A uniformly distributed number in [0, end); `end` is above 0.
    std::uint64_t below(std::uint64_t end) { return next64() % end; }
    /// A uniformly distributed number in [0, 1).
    double fraction() { return static_cast<double>(next64() >> 11) * 0x1p-53; }
    /// An element of a non-empty list.
    template <typename List>
    auto &oneOf(const List &list)
    {
        return list[static_cast<typename List::size_type>(below(static_cast<std::uint64_t>(list.size())))];
    }

private:
    std::uint64_t next64()
    {
        m_state += 0x9e3779b97f4a7c15;
        std::uint64_t mixed = m_state;
        mixed = (mixed ^ (mixed >> 30)) * 0xbf58476d1ce4e5b9;
        mixed = (mixed ^ (mixed >> 27)) * 0x94d049bb133111eb;
        return mixed ^ (mixed >> 31);
    }

    std::uint64_t m_state;
};

} // namespace bench
