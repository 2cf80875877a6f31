// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "text/Wording.h"

#include <string>

namespace placesd
{

/// Expressions for a full-text index, both empty for a reading that no text can fulfil.
struct MatchExpressions
{
    std::string exact; ///< Finds what has the words of a reading.
    /// Finds the same and more, but faster: by a few words, each of which has few entries as far as the vocabulary
    /// tells. Empty where there are no such words.
    std::string broad;
    /// Whether an index of the words collects entries for `exact` before it gives the first.
    bool isSlowToOpen = false;
};

/// Whether an index of words collects all entries of a beginning before it gives the first.
bool isSlowToOpen(const Spelling &spelling);

/// Writes a reading in the words of the vocabulary, so that the full-text index answers fast. It looks whole words up
/// one by one, but collects all entries of a beginning before it gives the first. So a beginning becomes the words that
/// start so, where these are few.
/// @param vocabulary all words of the index.
MatchExpressions matchExpressions(const Reading &reading, const CorrectionSource &vocabulary);

} // namespace placesd
