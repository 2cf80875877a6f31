// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "text/Vocabulary.h"

#include "places/Place.h"
#include "store/Store.h"
#include "support/Golden.h"
#include "support/SamplePlace.h"
#include "text/EditAutomaton.h"

#include <gmock/gmock.h>

#include <QtCore/QString>
#include <QtCore/QTemporaryDir>

#include <algorithm>
#include <ostream>
#include <random>
#include <set>
#include <tuple>

namespace placesd
{

bool operator==(const Correction &one, const Correction &other)
{
    return std::tie(one.word, one.edits, one.isPrefix) == std::tie(other.word, other.edits, other.isPrefix);
}

std::ostream &operator<<(std::ostream &stream, const Correction &correction)
{
    return stream << correction.word << " " << correction.edits << (correction.isPrefix ? "*" : "");
}

} // namespace placesd

namespace
{

using placesd::Correction;
using placesd::EditAutomaton;
using placesd::mostEdits;
using placesd::SharedVocabulary;
using placesd::Store;
using placesd::StoreShared;
using placesd::Vocabulary;
using vela::platform::places::Place;

std::string utf8(const std::u32string &text)
{
    return QString::fromStdU32String(text).toStdString();
}

/// The textbook algorithm for the edit distance.
int distance(const std::u32string &one, const std::u32string &other)
{
    std::vector<std::vector<int>> edits(one.size() + 1, std::vector<int>(other.size() + 1));
    for (std::size_t i = 0; i <= one.size(); ++i) {
        for (std::size_t j = 0; j <= other.size(); ++j) {
            int &here = edits[i][j] = static_cast<int>(std::max(i, j));
            if (i == 0 || j == 0)
                continue;
            here = std::min(
                {edits[i - 1][j] + 1, edits[i][j - 1] + 1, edits[i - 1][j - 1] + (one[i - 1] == other[j - 1] ? 0 : 1)});
            if (i > 1 && j > 1 && one[i - 1] == other[j - 2] && one[i - 2] == other[j - 1])
                here = std::min(here, edits[i - 2][j - 2] + 1);
        }
    }
    return edits[one.size()][other.size()];
}

/// True when a shorter prefix needs no more edits.
bool hasBetterStart(const std::u32string &typed, const std::u32string &start, int edits)
{
    for (std::size_t size = 1; size < start.size(); ++size) {
        if (distance(typed, start.substr(0, size)) <= edits)
            return true;
    }
    return false;
}

/// Compares the typed word with all words, or with all prefixes of words.
std::vector<Correction> correctionsByScan(const std::set<std::u32string> &words, const std::u32string &typed,
                                          bool asPrefix, std::size_t limit)
{
    std::set<std::u32string> candidates = words;
    for (const std::u32string &word : words) {
        for (std::size_t size = 1; asPrefix && size < word.size(); ++size)
            candidates.insert(word.substr(0, size));
    }
    std::vector<std::tuple<int, bool, std::size_t, std::string>> found;
    for (const std::u32string &candidate : candidates) {
        const int edits = distance(typed, candidate);
        if (edits >= 1 && edits <= mostEdits(utf8(typed)) && !(asPrefix && hasBetterStart(typed, candidate, edits)))
            found.emplace_back(edits, candidate[0] != typed[0], candidate.size(), utf8(candidate));
    }
    std::sort(found.begin(), found.end());
    found.resize(std::min(found.size(), limit));
    std::vector<Correction> corrections;
    for (const auto &each : found)
        corrections.push_back({std::get<3>(each), std::get<0>(each), asPrefix});
    return corrections;
}

/// Uses few letters, so that many words are similar. The letters have one to three bytes; two have the same first byte,
/// two the same last byte.
std::u32string randomWord(std::mt19937 &random, std::size_t least, std::size_t most)
{
    static const std::u32string LETTERS = U"aaabéñũạ";
    std::u32string word(least + random() % (most - least + 1), U' ');
    std::generate(word.begin(), word.end(), [&random] { return LETTERS[random() % LETTERS.size()]; });
    return word;
}

/// A word with up to three typing errors.
std::u32string slip(std::u32string word, std::mt19937 &random)
{
    for (std::size_t slips = random() % 4; slips > 0 && word.size() > 1; --slips) {
        const std::size_t place = 1 + random() % (word.size() - 1);
        const std::size_t added = random() % 2;
        if (random() % 3 == 0)
            std::swap(word[place - 1], word[place]);
        else
            word.replace(place - random() % 2, random() % 2, randomWord(random, added, added));
    }
    return word;
}

/// Adds words in batches of all sizes, so that there are tries of all sizes and merges of them.
std::set<std::u32string> fill(Vocabulary &vocabulary, std::mt19937 &random)
{
    std::set<std::u32string> words;
    for (int batch = 0; batch < 40; ++batch) {
        std::vector<std::string> added{"q1b", "qqqq2", "qb東", ""};
        for (std::size_t i = random() % (batch % 10 == 0 ? 100 : 4) + 1; i > 0; --i) {
            const std::u32string word = randomWord(random, 2, 10);
            words.insert(word);
            added.insert(added.end(), 1 + i % 2, utf8(word));
        }
        vocabulary.add(added);
    }
    return words;
}

} // namespace

TEST(Vocabulary, CorrectsLikeAScanOfAllWords)
{
    std::mt19937 random(7); // NOLINT: the same words in every run
    std::size_t corrected = 0;
    for (int round = 0; round < 12; ++round) {
        Vocabulary vocabulary;
        const std::set<std::u32string> words = fill(vocabulary, random);
        EXPECT_EQ(vocabulary.size(), words.size() + 3);
        for (int i = 0; i < 60; ++i) {
            const std::u32string typed =
                slip(*std::next(words.begin(), static_cast<int>(random() % words.size())), random);
            const bool asPrefix = i % 2 == 0;
            const std::size_t limit = i % 3 == 0 ? 1000 : random() % 6;
            const auto expected = correctionsByScan(words, typed, asPrefix, limit);
            corrected += expected.size();
            ASSERT_EQ(vocabulary.corrections(utf8(typed), asPrefix, limit, EditAutomaton::MOST_EDITS), expected)
                << utf8(typed);
            const std::u32string start = typed.substr(0, 3);
            const auto startsSo = [&](const auto &word) { return word.compare(0, start.size(), start) == 0; };
            EXPECT_EQ(vocabulary.hasPrefix(utf8(start)), std::any_of(words.begin(), words.end(), startsSo));
            EXPECT_EQ(vocabulary.contains(utf8(typed)), words.count(typed) == 1);
        }
        for (const std::u32string &word : words)
            EXPECT_TRUE(vocabulary.contains(utf8(word))) << utf8(word);
        EXPECT_TRUE(vocabulary.contains("q1b") && vocabulary.hasPrefix("qqq") && vocabulary.contains("qb東"));
        EXPECT_FALSE(vocabulary.contains("") || vocabulary.contains("aaaa1"));
    }
    EXPECT_GT(corrected, 500U);
}

TEST(Vocabulary, CorrectsOnlyWordsOfEnoughLetters)
{
    std::vector<std::pair<std::string, int>> cases = {
        {"bern\xC3", 0},           {"\xF8\x80\xFF\xED\xA0\x80", 0}, {std::string(63, 'a'), 2},
        {std::string(64, 'a'), 0}, {std::string(5000, 'a'), 0},
    };
    for (const auto &[typed, edits] : golden::rows<2>("service/data/text.txt", "edits"))
        cases.emplace_back(typed, std::stoi(edits));
    Vocabulary vocabulary;
    vocabulary.add({std::string(5000, 'a'), std::string(65, 'a'), "\xC3", "bern\xC3", "ber", "berna", "bernb"});
    EXPECT_EQ(vocabulary.size(), 5U) << "words that are not UTF-8 are left out";
    for (const auto &[typed, edits] : cases) {
        EXPECT_EQ(mostEdits(typed), edits) << typed;
        for (const bool asPrefix : {false, true})
            EXPECT_TRUE(edits > 0 || vocabulary.corrections(typed, asPrefix, 9, EditAutomaton::MOST_EDITS).empty())
                << typed;
    }
    EXPECT_THAT(vocabulary.corrections(std::string(63, 'a'), false, 9, EditAutomaton::MOST_EDITS),
                testing::ElementsAre(Correction{std::string(65, 'a'), 2, false}));
    EXPECT_THAT(vocabulary.corrections("bern", false, 9, EditAutomaton::MOST_EDITS),
                testing::ElementsAre(Correction{"ber", 1, false}, Correction{"berna", 1, false},
                                     Correction{"bernb", 1, false}));
}

TEST(SharedVocabulary, IsReadAgainAfterGrowingByItsSlack)
{
    SharedVocabulary words(2);
    words.load([] { return std::vector<std::string>{"alpha"}; });
    words.add({"beta", "gamma"});
    EXPECT_FALSE(words.isStale());
    words.add({"delta", "epsilon", "zeta"});
    EXPECT_TRUE(words.isStale());
    words.add({"eta"});
    EXPECT_FALSE(words.hasPrefix("eta")) << "a stale vocabulary takes no more words";
    {
        SharedVocabulary::Replacement unfinished(words);
        words.add({"theta"});
    }
    EXPECT_TRUE(words.hasPrefix("gam"));
    {
        SharedVocabulary::Replacement replacement(words);
        words.add({"beta"}); // known, but perhaps not yet to the reading thread
        replacement.finish({"alpha"});
    }
    EXPECT_FALSE(words.isStale());
    EXPECT_TRUE(words.hasPrefix("alpha") && words.hasPrefix("beta"));
    EXPECT_FALSE(words.hasPrefix("gam") || words.hasPrefix("theta"));
}

TEST(SharedVocabulary, DropsTheWordsOfRemovedPlaces)
{
    const QTemporaryDir folder;
    StoreShared shared;
    Store store(folder.filePath(QStringLiteral("places.db")).toStdString(), shared);
    std::vector<qint64> ids;
    for (const char *name : {"Quagga", "Zebra"}) {
        sample::FullPlace place(-1);
        place.setName(QLatin1String(name));
        ASSERT_TRUE(store.write([&] { return store.insert(place), true; }));
        ids.push_back(place.id());
    }
    ASSERT_TRUE(store.write([&] { return store.remove(ids[0]); }));
    EXPECT_TRUE(store.vocabulary().hasPrefix("quag"));
    store.rereadVocabulary();
    EXPECT_FALSE(store.vocabulary().hasPrefix("quag"));
    EXPECT_TRUE(store.vocabulary().hasPrefix("zebra"));
}
