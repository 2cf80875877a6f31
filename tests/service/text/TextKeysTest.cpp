// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "text/TextKeys.h"

#include "places/SearchOperator.h"
#include "store/Sql.h"
#include "support/Golden.h"
#include "text/Folding.h"
#include "text/Utf8.h"

#include <gmock/gmock.h>

#include <SQLiteCpp/SQLiteCpp.h>
#include <vector>

using namespace placesd;
using testing::ElementsAre;
using testing::IsEmpty;
using vela::platform::places::SearchOperator;

constexpr char DATA[] = "service/data/text.txt";

/// Both plans of a find must find the same names, so both must split words alike.
TEST(TextKeys, WordBoundariesEqualThoseOfTheFullTextIndex)
{
    constexpr uint END = 0x110000;
    SQLite::Database database(":memory:", SQLite::OPEN_READWRITE);
    database.exec(sql::TABLES);
    database.exec("BEGIN");
    SQLite::Statement add(database, "INSERT INTO name_index(rowid, name_key) VALUES (?1, ?2)");
    std::vector<bool> isCut(END);
    // All code points of an unused plane behave alike, so most of them are skipped.
    const auto next = [](uint code) { return code + (code < 0x33000 || code >> 12 == 0xE0 ? 1 : 64); };
    for (uint code = 1; code < END; code = next(code)) {
        if (QChar::isSurrogate(code))
            continue;
        const uint letters[] = {'a', code, 'b'};
        const QString text = QString::fromUcs4(letters, 3);
        isCut[code] = words(text).size() == 2;
        // Also finds the start and the end of words.
        ASSERT_EQ(hasWord(text.toStdString(), "b"), isCut[code]) << std::hex << code;
        ASSERT_EQ(hasWord(text.toStdString(), "a", true), isCut[code]) << std::hex << code;
        add.bind(1, code);
        add.bind(2, text.toStdString());
        add.exec();
        add.reset();
    }
    std::vector<bool> isCutByIndex(END);
    SQLite::Statement find(database, "SELECT rowid FROM name_index WHERE name_index MATCH '\"b\"*'");
    while (find.executeStep())
        isCutByIndex[find.getColumn(0).getUInt()] = true;
    for (uint code = 1; code < END; code = next(code))
        ASSERT_EQ(isCut[code], isCutByIndex[code]) << std::hex << code;
}

TEST(TextKeys, FoldCaseAndAccentsAndContainOtherSpellings)
{
    for (const auto &[given, search, sort, others] : golden::rows<4>(DATA, "keys")) {
        const QString text = QString::fromStdString(given);
        const std::string key = indexKey(text).toStdString();
        EXPECT_EQ(searchKey(text).toStdString(), search) << given;
        EXPECT_EQ(sortKey(text).toStdString(), sort) << given;
        EXPECT_EQ(searchKeyIn(key), search) << given;
        EXPECT_EQ(key, others.empty() ? search : search + KEY_END + others) << given;
    }
    const QString separated = QStringLiteral("x\x1Fy");
    EXPECT_EQ(searchKey(separated) + indexKey(separated) + sortKey(separated), QStringLiteral("x yx yx\x1Fy"));
    const QString marks = QStringLiteral("a") + QString(40, QChar(0x0316)) + QStringLiteral("\u0915\u093F");
    EXPECT_EQ(searchKey(marks), QStringLiteral("a\u0915\u093F")) << "vowel signs are no accents";
    EXPECT_EQ(caseFolded(marks).size(), 1 + 30 + 2) << "only this many marks in a row are kept";

    const std::string key =
        indexKey({QStringLiteral("Z\u00FCrich See"), QStringLiteral("Lac"), QStringLiteral("lac")}).toStdString();
    EXPECT_EQ(key, "zurich see\x1Flac\x1Fzuerich");
    for (const auto &[text, isIn] :
         {std::pair("zurich see", true), {"lac", true}, {"zurich", false}, {"zuerich", false}})
        EXPECT_EQ(isTextIn(key, text), isIn) << text;
    EXPECT_FALSE(isTextIn("", "x"));
}

TEST(TextKeys, TextsAreComparedByEachOperator)
{
    for (const auto &[text, operators] : golden::rows<2>(DATA, "operators")) {
        std::string passed;
        for (int op = 0; op < 10; ++op)
            passed += TextTest(op, QStringLiteral("caf ba"))(text) ? std::to_string(op) : "";
        EXPECT_EQ(passed, operators) << text;
    }
    for (int op = 0; op < 10; ++op)
        EXPECT_EQ(TextTest(op, QString()).isUnderstood(),
                  op >= SearchOperator::Equals && op <= SearchOperator::EndsWith);
    EXPECT_TRUE(TextTest(SearchOperator::Contains, QStringLiteral("--"))("a--b"));
    EXPECT_FALSE(TextTest(SearchOperator::Contains, QStringLiteral("--"))("a-b"));

    EXPECT_THAT(wordStarts("ab, c\u00E9 d!", 9), ElementsAre("ab", "ab, c\u00E9", "ab, c\u00E9 d"));
    EXPECT_THAT(wordStarts("ab, c\u00E9 d!", 2), ElementsAre("ab", "ab, c\u00E9"));
    EXPECT_THAT(wordStarts("abc", 9), IsEmpty());
    EXPECT_THAT(words(QStringLiteral("b a-b \u00E9")),
                ElementsAre(QStringLiteral("b"), QStringLiteral("a"), QStringLiteral("\u00E9")));
    EXPECT_THAT(utf8Words(QStringLiteral("x \u00E9")), ElementsAre("x", "\u00E9"));
    EXPECT_TRUE(hasWord("xab ab", "ab", true));
    EXPECT_FALSE(hasWord("xab abc", "ab", true));
    EXPECT_TRUE(hasWord("ab", "ab", true));
    for (const auto &[text, code] :
         {std::pair("A", 0x41U), {"\u00E9", 0xE9U}, {"\u6771", 0x6771U}, {"\U0001F355", 0x1F355U}}) {
        std::size_t position = 0;
        EXPECT_EQ(codePointAt(text, position), code);
        EXPECT_EQ(position, std::string(text).size());
    }
}
