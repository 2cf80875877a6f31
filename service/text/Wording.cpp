// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "text/Wording.h"

#include "Limits.h"
#include "text/CorrectionSource.h"
#include "text/EditAutomaton.h"
#include "text/Spellings.h"
#include "text/TextKeys.h"
#include "text/Utf8.h"

#include <algorithm>
#include <numeric>

namespace placesd
{

namespace
{

std::string joined(const std::vector<std::string> &parts, const char *separator)
{
    std::string text;
    for (const std::string &part : parts)
        text += (text.empty() ? "" : separator) + part;
    return text;
}

std::string expressionOf(const Wording::Word &word)
{
    std::vector<std::string> spellings;
    for (const Spelling &spelling : word)
        spellings.push_back('"' + spelling.text + (spelling.isWhole ? "\"" : "\"*"));
    return '(' + joined(spellings, " OR ") + ')';
}

/// The typed words with their corrections, and the words that a reading must contain.
class Corrector
{
public:
    Corrector(const Wording &typed, const CorrectionSource &vocabulary)
        : m_typed(typed.words())
        , m_vocabulary(vocabulary)
        , m_corrections(m_typed.size())
        , m_least(m_typed.size())
        , m_most(m_typed.size())
    {
        for (const std::size_t word : wordsToCorrect(false)) {
            if (!correct(word, 1))
                correct(word, EditAutomaton::MOST_EDITS);
            m_least[word] = m_corrections[word].empty() ? 0 : m_corrections[word].front().edits;
        }
    }

    /// Also finds longer corrections, and corrections of known words. Slow and rarely needed.
    void correctFurther()
    {
        for (const std::size_t word : wordsToCorrect(true))
            correct(word, EditAutomaton::MOST_EDITS);
    }

    /// Total of the fewest edits that turn each word into one of the vocabulary.
    [[nodiscard]] int least() const { return std::accumulate(m_least.begin(), m_least.end(), 0); }
    [[nodiscard]] int most() const { return std::accumulate(m_most.begin(), m_most.end(), 0); }

    /// The wordings with a total number of edits; only the first of them if there are many.
    [[nodiscard]] std::vector<Wording> wordings(int edits) const
    {
        std::vector<Wording> found;
        std::vector<int> levels = m_least;
        addWordings(0, edits - least(), levels, found);
        return found;
    }

    /// The words, each corrected if it is not in the vocabulary.
    [[nodiscard]] Wording known() const { return wording(m_least); }

private:
    /// The unknown words, then the known ones, up to the maximum number of corrected words.
    [[nodiscard]] std::vector<std::size_t> wordsToCorrect(bool withKnown) const
    {
        std::vector<std::size_t> words;
        std::vector<std::size_t> known;
        for (std::size_t i = 0; i < m_typed.size(); ++i)
            (isKnown(m_typed[i]) ? known : words).push_back(i);
        if (withKnown)
            words.insert(words.end(), known.begin(), known.end());
        words.resize(std::min(words.size(), limits::CORRECTED_WORDS));
        return words;
    }

    /// False when there is no correction with this number of edits.
    bool correct(std::size_t word, std::size_t edits)
    {
        const bool isLast = word + 1 == m_typed.size();
        std::vector<Correction> &found = m_corrections[word];
        found = m_vocabulary.corrections(m_typed[word].front().text, isLast, limits::CORRECTIONS_OF_WORD, edits);
        m_most[word] = found.empty() ? 0 : found.back().edits;
        return !found.empty();
    }

    [[nodiscard]] bool isKnown(const Wording::Word &word) const
    {
        return std::any_of(word.begin(), word.end(),
                           [this](const Spelling &spelling) { return m_vocabulary.hasPrefix(spelling.text); });
    }

    void addWordings(std::size_t word, int edits, std::vector<int> &levels, std::vector<Wording> &found) const
    {
        if (found.size() == limits::CORRECTED_WORDINGS)
            return;
        if (edits == 0)
            return found.push_back(wording(levels));
        if (word == levels.size())
            return;
        const int room = std::min(edits, m_most[word] - m_least[word]);
        for (int more = std::max(0, room); more >= 0; --more) {
            levels[word] += more;
            addWordings(word + 1, edits - more, levels, found);
            levels[word] -= more;
        }
    }

    [[nodiscard]] Wording wording(const std::vector<int> &levels) const
    {
        std::vector<Wording::Word> words = m_typed;
        for (std::size_t i = 0; i < words.size(); ++i) {
            for (const Correction &correction : m_corrections[i]) {
                if (correction.edits <= levels[i])
                    words[i].push_back({correction.word, !correction.isPrefix, correction.edits});
            }
        }
        return Wording(std::move(words));
    }

    const std::vector<Wording::Word> &m_typed;
    const CorrectionSource &m_vocabulary;
    std::vector<std::vector<Correction>> m_corrections;
    std::vector<int> m_least;
    std::vector<int> m_most;
};

/// Adds words one by one while a place contains all of them. Earlier words have priority.
std::vector<std::size_t> takeWords(const std::vector<Wording::Word> &words, const std::vector<std::size_t> &order,
                                   const std::function<bool(const std::vector<std::size_t> &)> &finds)
{
    std::vector<std::size_t> taken;
    for (const std::size_t word : order) {
        taken.push_back(word);
        if (taken.size() == words.size() || !finds(taken))
            taken.pop_back();
    }
    return taken;
}

/// Short words such as "am" and "de" have little meaning; so has a single letter of a script without spaces.
bool isShort(const Wording::Word &word)
{
    const std::string &text = word.front().text;
    const auto letters = std::count_if(text.begin(), text.end(), [](char c) { return !isContinuation(c); });
    std::size_t start = 0;
    return letters <= (isUnspaced(codePointAt(text, start)) ? 1 : 2);
}

Reading readingOf(const std::vector<Wording::Word> &words, const std::vector<std::size_t> &numbers)
{
    std::vector<Wording::Word> chosen;
    chosen.reserve(numbers.size());
    for (const std::size_t number : numbers)
        chosen.push_back(words[number]);
    return {{Wording(std::move(chosen))}, false};
}

/// Words that occur, the rare ones first.
std::vector<std::size_t> byRarity(const std::vector<Wording::Word> &words, const std::vector<std::size_t> &numbers,
                                  const ReadingSearch &search)
{
    std::vector<std::pair<int64_t, std::size_t>> frequencies;
    for (const std::size_t number : numbers) {
        if (const int64_t frequency = search.frequency(readingOf(words, {number})); frequency > 0)
            frequencies.emplace_back(frequency, number);
    }
    std::sort(frequencies.begin(), frequencies.end());
    std::vector<std::size_t> order;
    order.reserve(frequencies.size());
    for (const auto &[frequency, number] : frequencies)
        order.push_back(number);
    return order;
}

/// The reading with most of the words; without wordings when it matches nothing.
Reading mostWords(const std::vector<Wording::Word> &words, const ReadingSearch &search)
{
    std::vector<std::size_t> telling;
    for (std::size_t i = 0; i < words.size() && telling.size() < limits::WORDS_IN_TURN; ++i) {
        if (!isShort(words[i]))
            telling.push_back(i);
    }
    const std::size_t needed = (telling.size() + 1) / 2;
    std::vector<std::size_t> order = byRarity(words, telling, search);
    for (; !order.empty() && order.size() >= needed; order.erase(order.begin())) {
        const auto taken = takeWords(words, order, [&](const std::vector<std::size_t> &numbers) {
            return search.finds(readingOf(words, numbers));
        });
        // When the rarest word is known but matches nothing in this search, the other words would match anything: for
        // the airport of a city without a favourite airport, all airports among the favourites.
        if (taken.empty() || taken.front() != order.front())
            return {};
        if (taken.size() >= needed)
            return readingOf(words, taken);
    }
    return {};
}

} // namespace

Wording Wording::of(const QString &term)
{
    std::vector<Word> words;
    const auto add = [&words](const QString &key, const QStringList &others) {
        Word word{{key.toStdString()}};
        for (const QString &other : others)
            word.push_back({other.toStdString()});
        const auto isSame = [&word](const Word &known) { return known.front().text == word.front().text; };
        if (words.size() < limits::TERM_WORDS && std::none_of(words.begin(), words.end(), isSame))
            words.push_back(std::move(word));
    };
    const auto spelled = spelledWords(term);
    for (const SpelledWord &word : spelled) {
        for (const QString &piece : word.pieces)
            add(piece, {});
        if (word.pieces.isEmpty() && !word.key.isEmpty())
            add(word.key, word.others);
    }
    return Wording(std::move(words));
}

bool Wording::isIn(std::string_view key) const
{
    return passes([key](const Spelling &spelling) { return hasWord(key, spelling.text, spelling.isWhole); });
}

std::string Wording::expression() const
{
    std::vector<std::string> words;
    for (const Word &word : m_words)
        words.push_back(expressionOf(word));
    return '(' + joined(words, " AND ") + ')';
}

std::string Reading::expression() const
{
    std::vector<std::string> texts;
    for (const Wording &wording : wordings)
        texts.push_back(wording.expression());
    return joined(texts, " OR ");
}

Reading asTyped(const Wording &typed)
{
    return {{typed}, true};
}

Reading chooseReading(const Wording &typed, const ReadingSearch &search)
{
    Reading inNames = asTyped(typed);
    Reading inTexts{{typed}, false};
    if (typed.isEmpty() || search.finds(inNames))
        return inNames;
    if (search.finds(inTexts))
        return inTexts;
    Corrector corrector(typed, search.vocabulary);
    const int least = corrector.least();
    for (int edits = std::max(1, least); edits <= least + limits::MORE_EDITS; ++edits) {
        if (edits == least + 1 && typed.words().size() > limits::CORRECTED_WORDS)
            break;
        if (edits == least + 1)
            corrector.correctFurther();
        if (edits > corrector.most())
            break;
        Reading corrected{corrector.wordings(edits), false};
        if (!corrected.wordings.empty() && search.finds(corrected))
            return corrected;
    }
    const Reading some = mostWords(corrector.known().words(), search);
    return some.wordings.empty() ? inNames : some;
}

} // namespace placesd
