// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "protocol/ProtocolTypes.h"

#include <QtCore/QString>

#include <vector>

namespace placesd
{

/// A search rule of a request.
struct Rule
{
    orix_places_protocol::SearchRuleKind kind = orix_places_protocol::SearchRuleKind::Abstract;
    int field = 0;
    int op = 1;
    QString text;
    int value = 0;
    std::vector<Rule> members;
    int source = NO_SOURCE; ///< Number of the leaf among those that search other sources.

    static constexpr int NO_SOURCE = -1;
};

/// A sort rule of a request.
struct Sort
{
    orix_places_protocol::SortRuleKind kind = orix_places_protocol::SortRuleKind::Abstract;
    int order = 1;
    int field = 0;
    double latitude = 0;
    double longitude = 0;
    std::vector<Sort> members;
};

/// The arguments of a find.
struct Query
{
    int count = 0;
    int offset = 0;
    double latitude = 0;
    double longitude = 0;
    bool headerOnly = false;
    Rule rule;
    Sort sort;
    int providerPrimaryIndex = -1;
    int providerSecondaryIndex = -1;
    /// Perimeter of the stored places; Default for all perimeters.
    orix_places_protocol::Perimeter perimeter = orix_places_protocol::Perimeter::Default;
};

} // namespace placesd
