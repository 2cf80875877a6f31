// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QStringList>
#include <QtCore/QTemporaryDir>

#include <map>
#include <string>

namespace bench
{

class PlaceMaker;

/// Medians of another database for the same queries, in microseconds, by name of the query.
using OtherMedians = std::map<std::string, double>;

/// A private PostgreSQL server in a temporary folder, with a socket there and the places of a generated store.
/// Distances are those of PostGIS if it is installed, else planar distances in degrees.
class Postgres
{
public:
    /// Starts the server and fills it. On a failure, prints the reason to standard error; there are no medians then.
    explicit Postgres(int places);
    ~Postgres();
    Postgres(const Postgres &) = delete;
    Postgres &operator=(const Postgres &) = delete;

    /// Runs the comparable queries, round by round, over one open connection.
    [[nodiscard]] OtherMedians medians() const;

private:
    /// Runs a program of the server on its data folder; as another user when this process is root.
    bool runServer(const char *program, QStringList arguments) const;
    [[nodiscard]] bool start() const;
    /// Runs a file of the temporary folder with psql and returns its output; empty on a failure.
    [[nodiscard]] QByteArray runScript(const char *name) const;
    /// Writes the places, and the script that reads them into the server.
    void writePlaces() const;
    /// Path in the temporary folder.
    [[nodiscard]] std::string file(const char *name) const;
    /// A statement with the position of a city and the id of a place.
    [[nodiscard]] std::string withValues(std::string statement, PlaceMaker &maker) const;

    const int m_places;
    const QTemporaryDir m_folder;
    const QString m_programs; ///< Folder of the server's programs; empty when it is not installed.
    bool m_isFilled = false;
    bool m_isOnEarth = false; ///< Whether PostGIS is installed.
};

} // namespace bench
