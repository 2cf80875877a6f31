// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "text/CorrectionSource.h"

namespace placesd
{

/// Two vocabularies as one.
class JoinedVocabulary : public CorrectionSource
{
public:
    /// Both must outlive it.
    JoinedVocabulary(const CorrectionSource &first, const CorrectionSource &second)
        : m_first(first)
        , m_second(second)
    {}

    [[nodiscard]] bool hasPrefix(std::string_view start) const override
    {
        return m_first.hasPrefix(start) || m_second.hasPrefix(start);
    }
    [[nodiscard]] std::vector<std::string> startingWith(std::string_view start, std::size_t limit) const override;
    [[nodiscard]] std::vector<Correction> corrections(std::string_view typed, bool asPrefix, std::size_t limit,
                                                      std::size_t most) const override;

private:
    const CorrectionSource &m_first;
    const CorrectionSource &m_second;
};

} // namespace placesd
