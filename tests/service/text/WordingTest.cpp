// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "text/Wording.h"

#include "Limits.h"
#include "support/Golden.h"
#include "text/Expansion.h"
#include "text/JoinedVocabulary.h"
#include "text/TermTest.h"
#include "text/TextKeys.h"
#include "text/Vocabulary.h"

#include <gmock/gmock.h>

using namespace placesd;
using testing::ElementsAre;

namespace
{

constexpr char DATA[] = "service/data/text.txt";

/// Places by their texts. The part before the comma is the name.
class Search
{
public:
    explicit Search(std::vector<QString> texts)
        : m_texts(std::move(texts))
    {
        for (const QString &text : m_texts)
            m_words.add(utf8Words(indexKey(text)));
    }

    /// The chosen reading of a term as an expression; it starts with "names: " when only names are searched.
    std::string read(const QString &term)
    {
        const auto count = [this](const Reading &reading) {
            return std::count_if(m_texts.begin(), m_texts.end(), [&](const QString &text) {
                const QString part = reading.inNames ? text.section(QLatin1Char(','), 0, 0) : text;
                return std::any_of(reading.wordings.begin(), reading.wordings.end(),
                                   [&](const Wording &wording) { return wording.isIn(indexKey(part).toStdString()); });
            });
        };
        const auto finds = [&](const Reading &reading) { return ++asked, count(reading) > 0; };
        const Reading reading = chooseReading(Wording::of(term), {m_words, finds, count});
        return (reading.inNames ? "names: " : "") + reading.expression();
    }
    int asked = 0; ///< Number of searches.

private:
    const std::vector<QString> m_texts;
    Vocabulary m_words;
};

QString manyWords(int count)
{
    QString words;
    for (int i = 0; i < count; ++i)
        words += QStringLiteral("w%1 ").arg(i);
    return words;
}

} // namespace

TEST(Wording, TheFirstReadingWithResultsIsUsed)
{
    std::vector<QString> texts;
    for (const auto &[text] : golden::rows<1>(DATA, "places"))
        texts.push_back(QString::fromStdString(text));
    Search search(texts);
    for (const auto &[term, reading] : golden::rows<2>(DATA, "readings"))
        EXPECT_EQ(search.read(QString::fromStdString(term)), reading) << term;
    search.asked = 0;
    search.read(QStringLiteral("zur"));
    EXPECT_EQ(search.asked, 1);
    search.read(QString());
    EXPECT_EQ(search.asked, 1) << "no search without words";
    EXPECT_EQ(Wording::of(manyWords(limits::TERM_WORDS + 1)).words().size(), std::size_t{limits::TERM_WORDS});
    EXPECT_EQ(Wording::of(QStringLiteral("a A \u00E1")).words().size(), 1U);
    EXPECT_EQ(Wording::of(QStringLiteral("\u6771\u4EAC\u90FD")).expression(),
              "((\"\u6771\u4EAC\"*) AND (\"\u4EAC\u90FD\"*) AND (\"\u90FD\"*))");
}

TEST(Expansion, PrefixesBecomeTheWordsThatStartWithThem)
{
    Vocabulary words;
    words.add({"zurich", "zurichsee", "airport", "airports", "airpark", "airpol", "airpush", "bern"});
    for (const auto &[term, exact, broad, isSlow] : golden::rows<4>(DATA, "expansions")) {
        const MatchExpressions found = matchExpressions({{Wording::of(QString::fromStdString(term))}, false}, words);
        EXPECT_EQ(found.exact, exact) << term;
        EXPECT_EQ(found.broad, broad) << term;
        EXPECT_EQ(found.isSlowToOpen, isSlow == "slow") << term;
    }
}

TEST(TermTest, SearchesATermWithoutWordsLiterally)
{
    const TermTest signs(QStringLiteral("--"), {{Wording()}, false});
    EXPECT_TRUE(signs.isOfNames() && !signs.hasWords());
    EXPECT_TRUE(signs("a -- b"));
    EXPECT_FALSE(signs("ab\x1F--")) << "only the key of the name";
    const auto of = [](const char *term, bool inNames) {
        return TermTest(QLatin1String(term), {{Wording::of(QLatin1String(term))}, inNames});
    };
    EXPECT_TRUE(of("ab", false)("x abc") && !of("ab", false)("xab"));
    EXPECT_TRUE(of("ab", true).isLike(of("AB", true)));
    EXPECT_FALSE(of("ab", true).isLike(of("ab", false)) || of("ab", true).isLike(of("a", true)));
    EXPECT_FALSE(of("ab", false).isOfNames());
}

TEST(JoinedVocabulary, ReturnsTheWordsOfBothWithoutDuplicates)
{
    Vocabulary one;
    one.add({"geneva", "zurich", "zug"});
    Vocabulary two;
    two.add({"geneve", "zurich", "zuoz"});
    const JoinedVocabulary both(one, two);
    EXPECT_TRUE(both.hasPrefix("zug") && both.hasPrefix("zuo"));
    EXPECT_FALSE(both.hasPrefix("zur2"));
    EXPECT_THAT(both.startingWith("zu", 9), ElementsAre("zug", "zuoz", "zurich"));
    EXPECT_THAT(both.startingWith("zu", 2), ElementsAre("zug", "zuoz"));
    const auto corrections = [&](const char *typed, std::size_t limit) {
        std::vector<std::string> found;
        for (const Correction &each : both.corrections(typed, false, limit, 2))
            found.push_back(each.word);
        return found;
    };
    EXPECT_THAT(corrections("genevx", 9), ElementsAre("geneva", "geneve"));
    EXPECT_THAT(corrections("genevx", 1), ElementsAre("geneva"));
    EXPECT_THAT(corrections("zurihc", 9), ElementsAre("zurich"));
}
