// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "protocol/PlacesAPIEncoder.h"
#include "search/SearchRulePrivate.h"

#include <string>

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
    orix_places_protocol::PlacesAPIEncoder encoder;
    encoder.encodeFindPlaces(rule, sort, offset, limit, headerOnly, centre, -1, -1);
    char *data = nullptr;
    int length = 0;
    encoder.getData(data, length);
    return std::string(data, static_cast<std::size_t>(length)).substr(12);
}

} // namespace find
