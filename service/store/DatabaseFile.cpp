// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "store/DatabaseFile.h"

#include "Channel.h"
#include "Log.h"
#include "store/DamageReport.h"
#include "store/Sql.h"
#include "store/SqlFunctions.h"
#include "store/Store.h"

#include <SQLiteCpp/SQLiteCpp.h>

#include <QtCore/QByteArray>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <system_error>

#include <fcntl.h>
#include <sqlite3.h>
#include <sys/stat.h>

namespace placesd
{

using vela::system::channel::Descriptor;
namespace fs = std::filesystem;

namespace
{

/// Pages of the name index merged in one transaction.
constexpr int PAGES_PER_MERGE = 1000;
constexpr mode_t OWNER_ONLY = 0600;
constexpr mode_t PERMISSIONS = 07777;
/// First byte of the range that SQLite uses for locks (https://www.sqlite.org/fileformat2.html, "the lock-byte page").
constexpr off_t FIRST_LOCK_BYTE = 0x40000000;
constexpr off_t LOCK_BYTES = 512;
/// Suffixes of SQLite's files beside a database, and of the reserve.
constexpr const char *COMPANIONS[] = {"-wal", "-shm", "-journal", "-reserve"};

/// Opens a database without writing. A write-ahead log is read too; without one, the file is opened as immutable,
/// because SQLite would otherwise create an empty log.
SQLite::Database openUntouched(const std::string &path)
{
    std::error_code ignored;
    const std::uintmax_t logSize = fs::file_size(path + "-wal", ignored);
    const bool hasLog = !ignored && logSize > 0;
    const QByteArray uri = "file:" + QByteArray::fromStdString(path).toPercentEncoding("/");
    return SQLite::Database((uri + (hasLog ? "" : "?immutable=1")).toStdString(),
                            SQLite::OPEN_READONLY | SQLite::OPEN_URI);
}

void requirePlacesIn(const std::string &path)
{
    struct stat status = {};
    if (::stat(path.c_str(), &status) != 0) {
        if (errno != ENOENT)
            throw std::system_error(errno, std::generic_category());
        return;
    }
    if (!S_ISREG(status.st_mode))
        throw std::runtime_error("it is a folder, device, pipe or socket, not a file");
    SQLite::Database database = openUntouched(path);
    distrust(database);
    const bool isEmpty = database.execAndGet("PRAGMA user_version").getInt() == 0
                         && database.execAndGet(sql::COUNT_TABLES).getInt() == 0;
    if (!isEmpty)
        Store::requirePlaces(database);
}

/// Whether two paths are equal, also for missing files.
bool isSamePath(const fs::path &a, const fs::path &b)
{
    std::error_code ignored;
    return fs::equivalent(a, b, ignored)
           || (a.filename() == b.filename() && fs::equivalent(a.parent_path(), b.parent_path(), ignored));
}

} // namespace

void requirePlacesFile(const std::string &path)
{
    try {
        requirePlacesIn(path);
    } catch (const SQLite::Exception &error) {
        // A file that is no database at all may belong to another program.
        const std::string remedy = error.getErrorCode() == SQLITE_CORRUPT ? "; " + remedyFor(path) : std::string();
        throw std::runtime_error(path + ": " + error.what() + remedy);
    } catch (const std::exception &error) {
        throw std::runtime_error(path + ": " + error.what());
    }
}

bool isInUse(const std::string &database)
{
    // Each connection in use holds a lock on some bytes of this range.
    struct flock lock = {};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    lock.l_start = FIRST_LOCK_BYTE;
    lock.l_len = LOCK_BYTES;
    const Descriptor file(::open(database.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    return file.isOpen() && ::fcntl(file.get(), F_OFD_GETLK, &lock) == 0 && lock.l_type != F_UNLCK;
}

void makePrivate(const std::string &database)
{
    const auto mend = [](const std::string &path) {
        struct stat status = {};
        if (::stat(path.c_str(), &status) != 0 || (status.st_mode & PERMISSIONS) == OWNER_ONLY)
            return;
        if (::chmod(path.c_str(), OWNER_ONLY) == 0)
            logInfo("%s had mode %04o and has 0600 now", path.c_str(), status.st_mode & PERMISSIONS);
        else
            logError("%s has mode %04o, so others may read it; it cannot be made 0600: %s", path.c_str(),
                     status.st_mode & PERMISSIONS, std::strerror(errno));
    };
    mend(database);
    for (const char *companion : COMPANIONS)
        mend(database + companion);
}

/// @param sql one of sql::MERGES.
static void mergeIndex(SQLite::Database &connection, const char *sql, Deadline deadline)
{
    SQLite::Statement merge(connection, sql);
    for (int pages = -PAGES_PER_MERGE;; pages = PAGES_PER_MERGE) {
        const int before = connection.getTotalChanges();
        merge.reset();
        merge.bind(1, pages);
        merge.exec();
        // The statement itself counts as one change.
        if (connection.getTotalChanges() - before < 2)
            return;
        if (hasPassed(deadline))
            throw std::runtime_error("the time limit is reached; the service continues at its next stop");
    }
}

void purgeRemovedWords(const std::string &database, Deadline deadline)
{
    try {
        SQLite::Database connection(database, SQLite::OPEN_READWRITE);
        connection.exec(sql::PURGE_SETTINGS);
        for (const char *merge : sql::MERGES)
            mergeIndex(connection, merge, deadline);
    } catch (const std::exception &error) {
        logError("%s: words of removed places stay in its index: %s", database.c_str(), error.what());
    }
}

bool isFileOf(const std::string &database, const std::string &path)
{
    const fs::path given = fs::absolute(database);
    std::error_code ignored;
    // SQLite creates its files beside the target of a symbolic link.
    const fs::path real = fs::weakly_canonical(given, ignored);
    for (const fs::path &base : {given, real}) {
        if (isSamePath(base, path))
            return true;
        for (const char *companion : COMPANIONS) {
            if (isSamePath(base.string() + companion, path))
                return true;
        }
    }
    return isSamePath(given.string() + "-gazetteer", path);
}

} // namespace placesd
