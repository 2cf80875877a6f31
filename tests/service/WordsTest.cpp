// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "store/Sql.h"
#include "text/TextKeys.h"

#include <gmock/gmock.h>

#include <SQLiteCpp/SQLiteCpp.h>
#include <vector>

/// A name whose words the index cut otherwise would be found by one plan of a find and not by another.
TEST(Words, AreThoseOfTheFullTextIndexAroundEveryCodePoint)
{
    constexpr uint END = 0x110000;
    SQLite::Database database(":memory:", SQLite::OPEN_READWRITE);
    database.exec(placesd::sql::TABLES);
    database.exec("BEGIN");
    SQLite::Statement add(database, "INSERT INTO name_index(rowid, name_key) VALUES (?1, ?2)");
    std::vector<bool> isCut(END);
    for (uint code = 1; code < END; ++code) {
        if (QChar::isSurrogate(code))
            continue;
        const uint letters[] = {'a', code, 'b'};
        const QString text = QString::fromUcs4(letters, 3);
        isCut[code] = placesd::words(text).size() == 2;
        add.bind(1, code);
        add.bind(2, text.toStdString());
        add.exec();
        add.reset();
    }
    std::vector<bool> isCutByIndex(END);
    SQLite::Statement find(database, "SELECT rowid FROM name_index WHERE name_index MATCH '\"b\"*'");
    while (find.executeStep())
        isCutByIndex[find.getColumn(0).getUInt()] = true;
    for (uint code = 1; code < END; ++code)
        ASSERT_EQ(isCut[code], isCutByIndex[code]) << std::hex << code;
}
