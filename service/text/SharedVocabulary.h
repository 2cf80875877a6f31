// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Limits.h"
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
    /// @param slack words beyond those that were read, from which on they are read again: some of them may be of places
    /// that are gone. Beyond twice as many, no words are added until then.
    explicit SharedVocabulary(std::size_t slack = limits::VOCABULARY_SLACK)
        : m_slack(slack)
    {}

    /// Adds words of what is being written. A word whose place is not stored in the end does no harm.
    void add(std::vector<std::string> words);
    /// Reads the words of what was written before, unless that was done. Others who want them wait.
    void load(const std::function<std::vector<std::string>()> &readWords);
    /// Makes the next load() read again, because the database became another one.
    void expire();

    /// Whether the words are to be read again.
    [[nodiscard]] bool isStale() const;
    /// Replaces the words by those that are read; what is added meanwhile is kept. Only one at a time.
    class Replacement
    {
    public:
        /// From here on what is added is kept: no write that began before may be under way.
        explicit Replacement(SharedVocabulary &vocabulary);
        Replacement(const Replacement &) = delete;
        Replacement &operator=(const Replacement &) = delete;
        ~Replacement();
        void finish(std::vector<std::string> words);

    private:
        SharedVocabulary &m_vocabulary;
    };

    [[nodiscard]] bool hasPrefix(std::string_view start) const override;
    [[nodiscard]] std::vector<std::string> startingWith(std::string_view start, std::size_t limit) const override;
    [[nodiscard]] std::vector<Correction> corrections(std::string_view typed, bool asPrefix, std::size_t limit,
                                                      std::size_t most) const override;

private:
    std::mutex m_loading;
    bool m_isLoaded = false; ///< Guarded by m_loading.
    const std::size_t m_slack;
    mutable std::shared_mutex m_mutex;
    // Guarded by m_mutex.
    Vocabulary m_words;
    std::size_t m_readSize = 0;       ///< Of the words when they were read.
    bool m_isReading = false;         ///< While a replacement is.
    std::vector<std::string> m_added; ///< Since then.
    bool m_isIncomplete = false;      ///< Words were not added.
};

} // namespace placesd
