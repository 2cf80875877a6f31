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

/// Receives a problem. @param place with the problem; 0 for none or several.
using ReportProblem = std::function<void(const std::string &problem, qint64 place)>;

/// "place 7 (Name)", for a report.
std::string nameOfPlace(qint64 id, const std::string &name);

/// Reports problems in the pages of a database, by table if possible.
void checkPagesOf(SQLite::Database &database, const ReportProblem &report);

/// The problems of a file with places, one line each; none for a sound file. They contain names of places, so print
/// them to the operator's terminal, not to the log. Checks a copy in a private temporary folder, so the file may be in
/// use. Throws std::runtime_error when it cannot be opened or is not a database of places.
std::vector<std::string> checkDatabase(const std::string &path);

} // namespace placesd
