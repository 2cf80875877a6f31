// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KnownPlace.h"

#include <vector>

namespace bench
{

/// What is typed, and what is meant by it.
struct SearchQuestion
{
    QString typed;
    std::vector<const KnownPlace *> meant; ///< Any of them is right; none where only the time matters.
};

/// Questions of one kind: a row of the report.
struct QuestionSet
{
    QString name;
    std::vector<SearchQuestion> questions;
};

} // namespace bench
