// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "store/SqlFunctions.h"

#include <sqlite3.h>

namespace placesd
{

namespace
{

void bindValue(SQLite::Statement &statement, int index, const QVariant &value)
{
    if (!value.isValid())
        statement.bind(index);
    else if (value.type() == QVariant::String)
        statement.bind(index, utf8(value.toString()));
    else if (value.type() == QVariant::ByteArray)
        statement.bind(index, value.toByteArray().toStdString());
    else if (value.type() == QVariant::Double)
        statement.bind(index, value.toDouble());
    else
        statement.bind(index, static_cast<int64_t>(value.toLongLong()));
}

} // namespace

void harden(SQLite::Database &database)
{
    sqlite3_db_config(database.getHandle(), SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    database.exec("PRAGMA cell_size_check = ON");
}

void distrust(SQLite::Database &database)
{
    harden(database);
    sqlite3_db_config(database.getHandle(), SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
}

std::string utf8(const QString &text)
{
    return text.toStdString();
}

std::string_view viewOf(const SQLite::Column &column)
{
    const auto *bytes = static_cast<const char *>(column.getBlob());
    return {bytes, static_cast<std::size_t>(column.getBytes())};
}

std::string blobOf(const SQLite::Column &column)
{
    return std::string(viewOf(column));
}

void bindBlob(SQLite::Statement &statement, int index, const std::string &bytes)
{
    statement.bind(index, bytes.data(), static_cast<int>(bytes.size()));
}

void bindOne(SQLite::Statement &statement, int index, qint64 value)
{
    statement.bind(index, static_cast<int64_t>(value));
}

void bindOne(SQLite::Statement &statement, int index, int value)
{
    statement.bind(index, value);
}

void bindOne(SQLite::Statement &statement, int index, const QString &value)
{
    statement.bind(index, utf8(value));
}

void bindOne(SQLite::Statement &statement, int index, const std::optional<double> &value)
{
    if (value)
        statement.bind(index, *value);
    else
        statement.bind(index);
}

void bindAll(SQLite::Statement &statement, const std::vector<QVariant> &values)
{
    int index = 0;
    for (const QVariant &value : values)
        bindValue(statement, ++index, value);
}

} // namespace placesd
