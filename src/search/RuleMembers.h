// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <vector>

namespace vela::platform::places
{

/// True when two lists of rule pointers have the same length and every rule of `a` equals some rule of `b`, in any
/// order and number. Null equals null.
template <typename Members>
bool haveSameMembers(const Members &a, const Members &b)
{
    const auto same = [](const auto &left, const auto &right) {
        return left && right ? *left == *right : left == right;
    };
    return a.size() == b.size() && std::all_of(a.begin(), a.end(), [&](const auto &rule) {
               return std::any_of(b.begin(), b.end(), [&](const auto &other) { return same(rule, other); });
           });
}

/// The rules in a list of owning pointers; not transferred.
template <typename Owner>
auto membersOf(const std::vector<Owner> &owners)
{
    std::vector<decltype(owners.front().get())> members;
    members.reserve(owners.size());
    for (const Owner &owner : owners)
        members.push_back(owner.get());
    return members;
}

} // namespace vela::platform::places
