// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "text/JoinedVocabulary.h"

#include <algorithm>

namespace placesd
{

std::vector<std::string> JoinedVocabulary::startingWith(std::string_view start, std::size_t limit) const
{
    std::vector<std::string> joined = m_first.startingWith(start, limit);
    for (std::string &word : m_second.startingWith(start, limit))
        joined.push_back(std::move(word));
    std::sort(joined.begin(), joined.end());
    joined.erase(std::unique(joined.begin(), joined.end()), joined.end());
    joined.resize(std::min(joined.size(), limit));
    return joined;
}

std::vector<Correction> JoinedVocabulary::corrections(std::string_view typed, bool asPrefix, std::size_t limit,
                                                      std::size_t most) const
{
    std::vector<Correction> joined = m_first.corrections(typed, asPrefix, limit, most);
    for (Correction &correction : m_second.corrections(typed, asPrefix, limit, most)) {
        const auto isSame = [&correction](const Correction &known) { return known.word == correction.word; };
        if (std::none_of(joined.begin(), joined.end(), isSame))
            joined.push_back(std::move(correction));
    }
    std::stable_sort(joined.begin(), joined.end(),
                     [](const Correction &a, const Correction &b) { return a.edits < b.edits; });
    joined.resize(std::min(joined.size(), limit));
    return joined;
}

} // namespace placesd
