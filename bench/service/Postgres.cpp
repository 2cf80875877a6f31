// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "Postgres.h"

#include "model/PlacePrivate.h"
#include "PlaceMaker.h"
#include "PostgresSql.h"
#include "Question.h"

#include <QtCore/QDir>
#include <QtCore/QProcess>

#include <algorithm>
#include <array>
#include <fstream>
#include <iostream>

#include <pwd.h>
#include <unistd.h>

namespace bench
{

using vela::platform::places::PlacePrivate;

namespace
{

constexpr int ROUNDS = 15;
/// Timeout for filling the server, and for all queries.
constexpr int TIMEOUT_MS = 8 * 60 * 1000;
constexpr std::uint64_t SEED = 5;
/// User of the server when this process is root: the server refuses to run as root.
constexpr char SERVER_USER[] = "postgres";

/// Folder of the newest server's programs; empty when there is none.
QString serverPrograms()
{
    const QDir versions(QStringLiteral("/usr/lib/postgresql"));
    for (const QString &version : versions.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name | QDir::Reversed)) {
        QString folder = versions.filePath(version) + QStringLiteral("/bin/");
        if (QFile::exists(folder + QStringLiteral("pg_ctl")))
            return folder;
    }
    return {};
}

void replaceAll(std::string &text, const std::string &name, const std::string &value)
{
    for (auto at = text.find(name); at != std::string::npos; at = text.find(name, at + value.size()))
        text.replace(at, name.size(), value);
}

/// Writes a row of places and its tags for COPY.
void writeRow(int id, const PlaceMaker::MadePlace &made, std::ostream &places, std::ostream &tags)
{
    const PlacePrivate &data = *PlacePrivate::privateFromPublic(made.place.get());
    const auto position = data.primaryCoordinates();
    places << id << '\t' << data.name().toStdString() << '\t' << data.owner().toStdString() << '\t'
           << data.persistenceMask() << '\t' << data.usageCount() << '\t' << data.lastUsedTime() << '\t'
           << data.createdTime() << '\t' << data.updatedTime() << '\t' << position.latitude() << '\t'
           << position.longitude() << '\t' << made.feature << '\n';
    for (const QString &tag : data.tags())
        tags << tag.toStdString() << '\t' << id << '\n';
}

/// Medians of the times from psql: the statements in turn, round by round; the first round is for warming up.
OtherMedians mediansOf(const QByteArray &output)
{
    constexpr std::size_t COUNT = std::size(sql::STATEMENTS);
    std::array<std::vector<double>, COUNT> times;
    std::size_t next = 0;
    for (const QByteArray &line : output.split('\n')) {
        if (line.startsWith("Time: ") && next++ >= COUNT)
            times[(next - 1) % COUNT].push_back(line.split(' ').at(1).toDouble() * 1000);
    }
    OtherMedians medians;
    for (std::size_t i = 0; i < COUNT; ++i) {
        std::sort(times[i].begin(), times[i].end());
        medians[sql::STATEMENTS[i].question] = Answers{0, times[i]}.median();
    }
    return medians;
}

} // namespace

Postgres::Postgres(int places)
    : m_places(places)
    , m_programs(serverPrograms())
{
    if (m_programs.isEmpty() || !start()) {
        std::cerr << "PostgreSQL is not installed, or does not start: no column for it\n";
        return;
    }
    std::ofstream(file("available.sql")) << "\\t\nSELECT name FROM pg_available_extensions WHERE name = 'postgis'";
    m_isOnEarth = runScript("available.sql").contains("postgis");
    if (!m_isOnEarth)
        std::cerr << "PostGIS is not installed: PostgreSQL's distances are those of the plane of degrees\n";
    std::cerr << "filling PostgreSQL with " << m_places << " places\n";
    writePlaces();
    m_isFilled = runScript("fill.sql").contains("filled");
}

Postgres::~Postgres()
{
    if (!m_programs.isEmpty())
        runServer("pg_ctl", {QStringLiteral("stop"), QStringLiteral("-m"), QStringLiteral("immediate")});
}

std::string Postgres::file(const char *name) const
{
    return m_folder.filePath(QLatin1String(name)).toStdString();
}

bool Postgres::runServer(const char *program, QStringList arguments) const
{
    arguments = QStringList{m_programs + QLatin1String(program), QStringLiteral("-D"),
                            m_folder.filePath(QStringLiteral("data"))}
                + arguments;
    if (::geteuid() == 0)
        arguments = QStringList{QStringLiteral("runuser"), QStringLiteral("-u"), QLatin1String(SERVER_USER),
                                QStringLiteral("--")}
                    + arguments;
    QProcess process;
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(m_folder.filePath(QStringLiteral("errors")), QIODevice::Append);
    process.setWorkingDirectory(m_folder.path());
    process.start(arguments.takeFirst(), arguments);
    return process.waitForFinished(TIMEOUT_MS) && process.exitStatus() == QProcess::NormalExit
           && process.exitCode() == 0;
}

bool Postgres::start() const
{
    if (const passwd *user = ::getpwnam(SERVER_USER); user && ::geteuid() == 0) {
        if (::chown(m_folder.path().toLocal8Bit().constData(), user->pw_uid, user->pw_gid) != 0)
            return false;
    }
    const QString options = QStringLiteral("-c listen_addresses='' -k %1").arg(m_folder.path());
    return runServer("initdb",
                     {QStringLiteral("-U"), QLatin1String(SERVER_USER), QStringLiteral("-A"), QStringLiteral("trust"),
                      QStringLiteral("-E"), QStringLiteral("UTF8"), QStringLiteral("--locale=C.UTF-8")})
           && runServer("pg_ctl", {QStringLiteral("start"), QStringLiteral("-w"), QStringLiteral("-o"), options,
                                   QStringLiteral("-l"), m_folder.filePath(QStringLiteral("log"))});
}

QByteArray Postgres::runScript(const char *name) const
{
    QProcess psql;
    psql.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    psql.start(QStringLiteral("psql"),
               {QStringLiteral("-X"), QStringLiteral("-q"), QStringLiteral("-h"), m_folder.path(), QStringLiteral("-U"),
                QLatin1String(SERVER_USER), QStringLiteral("-f"), QString::fromStdString(file(name))});
    return psql.waitForFinished(TIMEOUT_MS) && psql.exitCode() == 0 ? psql.readAllStandardOutput() : QByteArray();
}

void Postgres::writePlaces() const
{
    std::ofstream places(file("places"));
    std::ofstream tags(file("tags"));
    places.precision(8);
    PlaceMaker maker;
    for (int id = 1; id <= m_places; ++id)
        writeRow(id, maker.next(), places, tags);
    std::ofstream(file("fill.sql")) << "\\set ON_ERROR_STOP on\n"
                                    << sql::TABLES
                                    << "\\copy place(id, name, owner, mask, usage_count, last_used, created,"
                                    << " updated, latitude, longitude, feature) FROM '" << file("places") << "'\n"
                                    << "\\copy tag FROM '" << file("tags") << "'\n"
                                    << (m_isOnEarth ? sql::POSITION_ON_EARTH : sql::POSITION_IN_PLANE) << sql::INDEXES
                                    << "\\echo filled\n";
}

OtherMedians Postgres::medians() const
{
    if (!m_isFilled)
        return {};
    PlaceMaker maker(SEED);
    std::ofstream script(file("questions.sql"));
    script << "SET statement_timeout = '5s';\n\\o /dev/null\n\\timing on\n";
    for (int round = 0; round <= ROUNDS; ++round) {
        for (const sql::Statement &statement : sql::STATEMENTS)
            script << withValues(statement.text, maker) << ";\n";
    }
    script.close();
    return mediansOf(runScript("questions.sql"));
}

std::string Postgres::withValues(std::string statement, PlaceMaker &maker) const
{
    const auto position = maker.city().position;
    const std::string degrees = std::to_string(position.longitude()) + "," + std::to_string(position.latitude());
    replaceAll(statement, ":centre",
               m_isOnEarth ? "ST_SetSRID(ST_MakePoint(" + degrees + "), 4326)::geography" : "point(" + degrees + ")");
    replaceAll(statement, ":id", std::to_string(1 + maker.below(static_cast<std::uint64_t>(m_places))));
    return statement;
}

} // namespace bench
