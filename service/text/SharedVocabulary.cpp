// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "text/SharedVocabulary.h"

#include <algorithm>

namespace placesd
{

/// Most places add no new word, so the check for new words does not block readers.
void SharedVocabulary::add(std::vector<std::string> words)
{
    {
        const std::shared_lock<std::shared_mutex> lock(m_mutex);
        const auto isKnown = [this](const std::string &word) { return !m_isReading && m_words.contains(word); };
        words.erase(std::remove_if(words.begin(), words.end(), isKnown), words.end());
    }
    if (words.empty())
        return;
    const std::unique_lock<std::shared_mutex> lock(m_mutex);
    const bool isFull = m_words.size() > m_readSize + 2 * m_slack;
    const bool isKept = m_isReading && m_added.size() <= m_slack;
    if (isKept)
        m_added.insert(m_added.end(), words.begin(), words.end());
    m_isIncomplete = m_isIncomplete || (!isKept && (isFull || m_isReading));
    if (!isFull)
        m_words.add(std::move(words));
}

void SharedVocabulary::load(const std::function<std::vector<std::string>()> &readWords)
{
    const std::lock_guard<std::mutex> loading(m_loading);
    if (m_isLoaded)
        return;
    std::vector<std::string> words = readWords();
    const std::unique_lock<std::shared_mutex> lock(m_mutex);
    m_words.add(std::move(words));
    m_readSize = m_words.size();
    m_isLoaded = true;
}

void SharedVocabulary::expire()
{
    const std::lock_guard<std::mutex> loading(m_loading);
    m_isLoaded = false;
}

bool SharedVocabulary::isStale() const
{
    const std::shared_lock<std::shared_mutex> lock(m_mutex);
    return m_isIncomplete || m_words.size() > m_readSize + m_slack;
}

SharedVocabulary::Replacement::Replacement(SharedVocabulary &vocabulary)
    : m_vocabulary(vocabulary)
{
    const std::unique_lock<std::shared_mutex> lock(m_vocabulary.m_mutex);
    m_vocabulary.m_isReading = true;
    m_vocabulary.m_isIncomplete = false;
}

SharedVocabulary::Replacement::~Replacement()
{
    const std::unique_lock<std::shared_mutex> lock(m_vocabulary.m_mutex);
    m_vocabulary.m_isReading = false;
    m_vocabulary.m_added = {};
}

void SharedVocabulary::Replacement::finish(std::vector<std::string> words)
{
    Vocabulary fresh;
    fresh.add(std::move(words));
    const std::unique_lock<std::shared_mutex> lock(m_vocabulary.m_mutex);
    m_vocabulary.m_readSize = fresh.size();
    fresh.add(std::move(m_vocabulary.m_added));
    m_vocabulary.m_words = std::move(fresh);
}

bool SharedVocabulary::hasPrefix(std::string_view start) const
{
    const std::shared_lock<std::shared_mutex> lock(m_mutex);
    return m_words.hasPrefix(start);
}

std::vector<std::string> SharedVocabulary::startingWith(std::string_view start, std::size_t limit) const
{
    const std::shared_lock<std::shared_mutex> lock(m_mutex);
    return m_words.startingWith(start, limit);
}

std::vector<Correction> SharedVocabulary::corrections(std::string_view typed, bool asPrefix, std::size_t limit,
                                                      std::size_t most) const
{
    const std::shared_lock<std::shared_mutex> lock(m_mutex);
    return m_words.corrections(typed, asPrefix, limit, most);
}

} // namespace placesd
