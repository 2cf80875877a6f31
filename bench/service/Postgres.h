// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QStringList>
#include <QtCore/QTemporaryDir>

#include <map>
#include <string>

namespace bench
{

class PlaceMaker;

/// Medians of another database on the same questions, in microseconds, by the names of the questions.
using OtherMedians = std::map<std::string, double>;

/// A PostgreSQL server of the benchmark's own, in a temporary folder and on a socket there, with the places of a made
/// store. Distances are PostGIS's where that is installed, else those of the plane of degrees.
class Postgres
{
public:
    /// Starts the server and fills it. Where that is not possible, standard error says why and there are no medians.
    explicit Postgres(int places);
    ~Postgres();
    Postgres(const Postgres &) = delete;
    Postgres &operator=(const Postgres &) = delete;

    /// Puts the questions that are alike there, round by round, over one connection that stays open.
    [[nodiscard]] OtherMedians medians() const;

private:
    /// Runs one of the server's programs on its data folder; as another user where this process is root.
    bool runServer(const char *program, QStringList arguments) const;
    [[nodiscard]] bool start() const;
    /// Has psql run a file of the temporary folder, and returns what it writes; empty when it fails.
    [[nodiscard]] QByteArray runScript(const char *name) const;
    /// Writes the places, and the script that has the server read them.
    void writePlaces() const;
    /// Path in the temporary folder.
    [[nodiscard]] std::string file(const char *name) const;
    /// A statement with the position of some city and the id of some place.
    [[nodiscard]] std::string withValues(std::string statement, PlaceMaker &maker) const;

    const int m_places;
    const QTemporaryDir m_folder;
    const QString m_programs; ///< Folder of the server's programs; empty where it is not installed.
    bool m_isFilled = false;
    bool m_isOnEarth = false; ///< Whether there is PostGIS.
};

} // namespace bench
