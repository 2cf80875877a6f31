// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "text/Wording.h"

#include <string>

namespace placesd
{

/// Expressions for a full-text index; both empty for a reading that no text matches.
struct MatchExpressions
{
    std::string exact; ///< Matches texts with the words of a reading.
    /// Matches the same texts and more, but faster: by a few words that are rare in the vocabulary. Empty without such
    /// words.
    std::string broad;
    /// Whether the index collects entries for `exact` before it returns the first one.
    bool isSlowToOpen = false;
};

/// Whether the index collects all entries of a prefix before it returns the first one.
bool isSlowToOpen(const Spelling &spelling);

/// Converts a reading to words of the vocabulary, so that the full-text index answers fast. The index looks whole words
/// up one by one, but collects all entries of a prefix before it returns the first one. So a prefix is replaced by the
/// words that start with it, if these are few.
/// @param vocabulary all words of the index.
MatchExpressions matchExpressions(const Reading &reading, const CorrectionSource &vocabulary);

} // namespace placesd
