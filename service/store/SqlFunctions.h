// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <SQLiteCpp/SQLiteCpp.h>

#include <QtCore/QString>
#include <QtCore/QVariant>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Helpers for all databases of the service.
namespace placesd
{

/// Makes a connection refuse changes of the schema table and of index tables, and broken pages
/// (https://www.sqlite.org/security.html).
void harden(SQLite::Database &database);
/// The same for an untrusted database: its schema may not call functions or virtual tables either. The triggers of a
/// database of places need both, so such a connection can only read.
void distrust(SQLite::Database &database);

std::string utf8(const QString &text);
/// The bytes of a column, valid until the next step of its statement.
std::string_view viewOf(const SQLite::Column &column);
std::string blobOf(const SQLite::Column &column);
void bindBlob(SQLite::Statement &statement, int index, const std::string &bytes);

void bindOne(SQLite::Statement &statement, int index, qint64 value);
void bindOne(SQLite::Statement &statement, int index, int value);
void bindOne(SQLite::Statement &statement, int index, const QString &value);
/// Binds NULL for std::nullopt.
void bindOne(SQLite::Statement &statement, int index, const std::optional<double> &value);

/// Binds values to the parameters of a statement, in order.
template <typename... Values>
void bindEach(SQLite::Statement &statement, const Values &...values)
{
    int index = 0;
    (bindOne(statement, ++index, values), ...);
}

/// Binds values from a position on: byte arrays as text, invalid variants as NULL. Returns the next position.
int bindAll(SQLite::Statement &statement, const std::vector<QVariant> &values, int from);

} // namespace placesd
