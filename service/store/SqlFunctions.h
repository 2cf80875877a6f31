// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <SQLiteCpp/SQLiteCpp.h>

#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVariant>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// What the databases of the service have in common.
namespace placesd
{

/// A term for the full-text index: the beginnings of words, all of which must occur. Empty for no words.
/// Has a connection refuse changes of the schema's own table and of index tables, and broken pages
/// (https://www.sqlite.org/security.html).
void harden(SQLite::Database &database);
/// The same for a database that anybody may have made: its schema runs no function and no virtual table either. The
/// triggers of a database of places need that, so it can be read only.
void distrust(SQLite::Database &database);

std::string utf8(const QString &text);
/// The bytes of a column, valid until its statement goes on.
std::string_view viewOf(const SQLite::Column &column);
std::string blobOf(const SQLite::Column &column);
void bindBlob(SQLite::Statement &statement, int index, const std::string &bytes);

void bindOne(SQLite::Statement &statement, int index, qint64 value);
void bindOne(SQLite::Statement &statement, int index, int value);
void bindOne(SQLite::Statement &statement, int index, const QString &value);
/// NULL where there is none.
void bindOne(SQLite::Statement &statement, int index, const std::optional<double> &value);

/// Binds values of these types to the parameters of a statement, in their order.
template <typename... Values>
void bindEach(SQLite::Statement &statement, const Values &...values)
{
    int index = 0;
    (bindOne(statement, ++index, values), ...);
}

/// Binds values, bytes as text and NULL for an invalid one, to the parameters of a statement, in their order.
void bindAll(SQLite::Statement &statement, const std::vector<QVariant> &values);

} // namespace placesd
