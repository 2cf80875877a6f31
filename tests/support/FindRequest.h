// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "search/SearchRulePrivate.h"
#include "support/Encoded.h"

/// The finds that a test expects the library to send.
namespace find
{

using namespace vela::platform::places;

inline SearchRule ruleOf(SearchRulePrivate::Node node)
{
    SearchRule rule;
    SearchRulePrivate::setPrivate(rule, node.release());
    return rule;
}

inline SearchRulePrivate::Node disjoint(SearchRulePrivate::Node node)
{
    return std::make_unique<DisjointRule>(std::move(node));
}

/// The body of a find with this rule and sort rule, as the encoder writes it.
inline std::string findBody(const SearchRule &rule, const SortRule &sort, int offset, int limit,
                            const Coordinates &centre = Coordinates(), bool headerOnly = true)
{
    return encoded([&](auto &request) {
               return request.encodeFindPlaces(rule, sort, offset, limit, headerOnly, centre, -1, -1);
           })
        .substr(12);
}

} // namespace find
