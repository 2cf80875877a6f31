// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "text/Expansion.h"

#include "Limits.h"
#include "text/CorrectionSource.h"
#include "text/Utf8.h"

#include <algorithm>

namespace placesd
{

namespace
{

/// Longest prefix in the prefix index of the full-text index, in characters.
constexpr std::ptrdiff_t INDEXED_BEGINNING = 3;
/// Words of a broad expression. More words cost more time than they save.
constexpr std::size_t BROAD_WORDS = 3;

bool isIndexedBeginning(const std::string &text)
{
    return std::count_if(text.begin(), text.end(), [](char byte) { return !isContinuation(byte); })
           <= INDEXED_BEGINNING;
}

bool hasBeginning(const Wording::Word &word)
{
    return std::any_of(word.begin(), word.end(), [](const Spelling &spelling) { return !spelling.isWhole; });
}

/// The long words among those that are looked up fast; they are usually rare.
std::vector<Wording::Word> broadWords(std::vector<Wording::Word> words)
{
    words.erase(std::remove_if(words.begin(), words.end(), hasBeginning), words.end());
    std::stable_sort(words.begin(), words.end(), [](const Wording::Word &a, const Wording::Word &b) {
        return a.front().text.size() > b.front().text.size();
    });
    words.resize(std::min(words.size(), BROAD_WORDS));
    return words;
}

class Expander
{
public:
    explicit Expander(const CorrectionSource &vocabulary)
        : m_vocabulary(vocabulary)
    {}

    MatchExpressions expand(const Reading &reading)
    {
        Reading exact;
        Reading broad;
        bool isBroad = true;
        for (const Wording &wording : reading.wordings) {
            const std::vector<Wording::Word> words = expand(wording);
            if (words.empty())
                continue;
            std::vector<Wording::Word> some = broadWords(words);
            isBroad = isBroad && !some.empty();
            exact.wordings.emplace_back(words);
            broad.wordings.emplace_back(std::move(some));
        }
        return {exact.expression(), isBroad ? broad.expression() : std::string(), m_isSlowToOpen};
    }

private:
    /// Empty when a word has no spelling in the vocabulary.
    std::vector<Wording::Word> expand(const Wording &wording)
    {
        m_left = limits::EXPANSIONS_OF_TERM;
        std::vector<Wording::Word> words;
        for (const Wording::Word &word : wording.words()) {
            words.emplace_back();
            for (const Spelling &spelling : word)
                append(spelling, words.back());
            if (words.back().empty())
                return {};
        }
        return words;
    }

    void append(const Spelling &spelling, Wording::Word &word)
    {
        const std::size_t most = isIndexedBeginning(spelling.text) ? 0 : std::min(limits::EXPANSIONS_OF_WORD, m_left);
        std::vector<std::string> words;
        if (!spelling.isWhole)
            words = m_vocabulary.startingWith(spelling.text, most + 1);
        if (spelling.isWhole || words.size() > most) {
            m_isSlowToOpen = m_isSlowToOpen || placesd::isSlowToOpen(spelling);
            word.push_back(spelling);
            return;
        }
        m_left -= words.size();
        for (std::string &each : words)
            word.push_back({std::move(each), true, spelling.edits});
    }

    const CorrectionSource &m_vocabulary;
    bool m_isSlowToOpen = false;
    std::size_t m_left = 0; ///< Words that a wording may still be expanded to.
};

} // namespace

bool isSlowToOpen(const Spelling &spelling)
{
    return !spelling.isWhole && !isIndexedBeginning(spelling.text);
}

MatchExpressions matchExpressions(const Reading &reading, const CorrectionSource &vocabulary)
{
    return Expander(vocabulary).expand(reading);
}

} // namespace placesd
