// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "text/TextKeys.h"

#include "places/SearchOperator.h"
#include "store/Sql.h"
#include "text/Folding.h"
#include "text/Utf8.h"

#include <gmock/gmock.h>

#include <SQLiteCpp/SQLiteCpp.h>
#include <vector>

using namespace placesd;
using testing::ElementsAre;
using testing::IsEmpty;
using vela::platform::places::SearchOperator;

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
    const struct
    {
        const char *text;
        const char *search;
        const char *sort;
        const char *others; ///< Spellings after the search key.
    } cases[] = {
        {"", "", "", ""},
        {"Old TOWN", "old town", "old town", ""},
        {"Caf\u00E9", "cafe", "caf\u00E9", ""},
        {"\u0141\u00F3d\u017A", "lodz", "\u0142\u00F3d\u017A", ""},
        {"Gl\u00FCck", "gluck", "gl\u00FCck", "glueck"},
        {"\u00C4 \u00D6 \u00D8 \u00C5", "a o o a", "\u00E4 \u00F6 \u00F8 \u00E5", "ae oe aa"},
        {"Stra\u00DFe", "strasse", "stra\u00DFe", ""},
        {"O'Hare \u2019x", "o'hare \u2019x", "o'hare \u2019x", "ohare x"},
        {"d\u02BBAb cd", "d\u02BBab cd", "d\u02BBab cd", "dab"},
        {"\u041C\u043E\u0441\u043A\u0432\u0430", "\u043C\u043E\u0441\u043A\u0432\u0430",
         "\u043C\u043E\u0441\u043A\u0432\u0430", "moskva"},
        {"\u6771\u4EACa", "\u6771\u4EACa", "\u6771\u4EACa", "dong jinga \u6771\u4EAC \u4EAC a"},
        {"\u05E9\u05B8\u05DC", "\u05E9\u05DC", "\u05E9\u05B8\u05DC", "sal"},
        {"\u0643\u064E\u0670", "\u0643", "\u0643\u064E\u0670", "ka"},
        {"x\x1Fy", "x y", "x\x1Fy", ""},
    };
    for (const auto &row : cases) {
        const QString text = QString::fromUtf8(row.text);
        const std::string key = indexKey(text).toStdString();
        EXPECT_EQ(searchKey(text).toStdString(), row.search) << row.text;
        EXPECT_EQ(sortKey(text).toStdString(), row.sort) << row.text;
        EXPECT_EQ(searchKeyIn(key), row.search) << row.text;
        EXPECT_EQ(key, *row.others ? std::string(row.search) + KEY_END + row.others : row.search) << row.text;
    }
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
    const struct
    {
        const char *text;
        std::vector<int> passed; ///< Operators that match "caf ba".
    } cases[] = {
        {"caf ba", {2, 4, 5, 6, 7, 8}},
        {"caf bar", {3, 4, 6, 7}},
        {"bar caf", {3, 5, 7}},
        {"x caf ba", {3, 4, 7, 8}},
        {"caf", {3, 5}},
        {"abar caf", {3, 5}},
        {"", {3, 5}},
    };
    for (const auto &row : cases) {
        std::vector<int> passed;
        for (int op = 0; op < 10; ++op) {
            if (TextTest(op, QStringLiteral("caf ba"))(row.text))
                passed.push_back(op);
        }
        EXPECT_EQ(passed, row.passed) << row.text;
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
