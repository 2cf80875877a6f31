// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "text/Vocabulary.h"

#include <functional>
#include <mutex>
#include <shared_mutex>

namespace placesd
{

/// The words of a database, for all who read and write it. Safe on any thread.
class SharedVocabulary : public CorrectionSource
{
public:
    /// Adds words of what is being written. A word whose place is not stored in the end does no harm.
    void add(std::vector<std::string> words);
    /// Reads the words of what was written before, unless that was done. Others who want them wait.
    void load(const std::function<std::vector<std::string>()> &readWords);
    /// Makes the next load() read again, because the database became another one.
    void expire();

    [[nodiscard]] bool hasPrefix(std::string_view start) const override;
    [[nodiscard]] std::vector<std::string> startingWith(std::string_view start, std::size_t limit) const override;
    [[nodiscard]] std::vector<Correction> corrections(std::string_view typed, bool asPrefix, std::size_t limit,
                                                      std::size_t most) const override;

private:
    std::mutex m_loading;
    bool m_isLoaded = false; ///< Guarded by m_loading.
    mutable std::shared_mutex m_mutex;
    Vocabulary m_words; ///< Guarded by m_mutex.
};

} // namespace placesd
