// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <SQLiteCpp/SQLiteCpp.h>

#include <string_view>

namespace placesd
{

/// The columns of gazetteer_sql::ROWS, in their order. Texts are UTF-8 keys, valid until the next step of the
/// statement.
struct IndexRow
{
    /// @param statement positioned on a row.
    explicit IndexRow(SQLite::Statement &statement)
        : id(statement.getColumn(0).getInt64())
        , latitude(statement.getColumn(1).getDouble())
        , longitude(statement.getColumn(2).getDouble())
        , category(statement.getColumn(3).getInt64())
        , name(textOf(statement.getColumn(4)))
        , sortKey(textOf(statement.getColumn(5)))
        , kind(textOf(statement.getColumn(6)))
        , alias(textOf(statement.getColumn(7)))
        , address(textOf(statement.getColumn(8)))
        , otherNames(textOf(statement.getColumn(9)))
    {}

    int64_t id;
    double latitude;
    double longitude;
    int64_t category; ///< Id of the kind.
    std::string_view name;
    std::string_view sortKey;
    std::string_view kind;
    std::string_view alias;
    std::string_view address;
    std::string_view otherNames; ///< Names in other languages and other spellings.

private:
    static std::string_view textOf(const SQLite::Column &column)
    {
        // Unlike getText(), this does not copy the text to append a null character.
        const auto *text = static_cast<const char *>(column.getBlob());
        return {text, static_cast<std::size_t>(text ? column.getBytes() : 0)};
    }
};

} // namespace placesd
