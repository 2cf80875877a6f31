// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QtGlobal>

#include <functional>
#include <string>
#include <vector>

namespace SQLite
{
class Database;
}

namespace placesd
{

/// Takes a problem of a database. @param place that has it; 0 for none, or many.
using ReportProblem = std::function<void(const std::string &problem, qint64 place)>;

/// "place 7 (Name)", for a line of a report.
std::string nameOfPlace(qint64 id, const std::string &name);

/// Reports what is wrong with the pages of a database, by table where that is known.
void checkPagesOf(SQLite::Database &database, const ReportProblem &report);

/// The problems of a file that holds places, one line each; none for a sound one. They name places, so they are for
/// the operator's terminal and not for the log. Checked is a copy in a private folder for temporary files; the file may
/// be in use. Throws std::runtime_error when it cannot be opened or is no database of places.
std::vector<std::string> checkDatabase(const std::string &path);

} // namespace placesd
