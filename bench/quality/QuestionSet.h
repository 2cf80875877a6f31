// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KnownPlace.h"

#include <vector>

namespace bench
{

/// The typed text and the intended places.
struct SearchQuestion
{
    QString typed;
    std::vector<const KnownPlace *> meant; ///< Any of them is correct; empty when only the time matters.
};

/// Queries of one kind: a row of the report.
struct QuestionSet
{
    QString name;
    std::vector<SearchQuestion> questions;
};

} // namespace bench
