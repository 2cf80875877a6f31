// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Limits.h"
#include "text/Vocabulary.h"

#include <functional>
#include <mutex>
#include <shared_mutex>

namespace placesd
{

/// The words of a database, shared by readers and writers. Thread-safe.
class SharedVocabulary : public CorrectionSource
{
public:
    /// @param slack the words are stale after growing by this many, because some may be of removed places. After twice
    /// as many, no words are added until the words are read again.
    explicit SharedVocabulary(std::size_t slack = limits::VOCABULARY_SLACK)
        : m_slack(slack)
    {}

    /// Adds words during a write. A word whose place is not stored in the end does no harm.
    void add(std::vector<std::string> words);
    /// Reads the words of earlier writes, once. Other callers wait.
    void load(const std::function<std::vector<std::string>()> &readWords);
    /// Makes the next load() read again, after the database was replaced.
    void expire();

    /// Whether the words should be read again.
    [[nodiscard]] bool isStale() const;
    /// Replaces the words by newly read ones; words added meanwhile are kept. One at a time.
    class Replacement
    {
    public:
        /// Records added words from now on. No write may be in progress.
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
    std::size_t m_readSize = 0;       ///< Number of words when they were read.
    bool m_isReading = false;         ///< During a replacement.
    std::vector<std::string> m_added; ///< Since the start of the replacement.
    bool m_isIncomplete = false;      ///< Some words were not added.
};

} // namespace placesd
