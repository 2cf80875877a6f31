// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "store/Backup.h"

#include "Channel.h"
#include "Log.h"
#include "store/DatabaseFile.h"
#include "store/SqlFunctions.h"
#include "store/Store.h"

#include <SQLiteCpp/Backup.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <functional>
#include <stdexcept>
#include <system_error>

#include <fcntl.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

namespace placesd
{

using orix_places_protocol::ReturnCode;
using vela::system::channel::Descriptor;
namespace fs = std::filesystem;

namespace
{

/// Pages copied between two looks at the clock.
constexpr int PAGES_PER_STEP = 1000;

[[noreturn]] void fail(const char *what)
{
    throw std::system_error(errno, std::generic_category(), what);
}

/// A folder of mode 0700 beside a file; removed with all that is in it. Nobody else can put a file or a link there.
class PrivateFolder
{
public:
    explicit PrivateFolder(const std::string &neighbour)
        : m_path(neighbour + ".XXXXXX")
    {
        if (!::mkdtemp(m_path.data()))
            fail("cannot write there");
    }
    PrivateFolder(const PrivateFolder &) = delete;
    PrivateFolder &operator=(const PrivateFolder &) = delete;
    ~PrivateFolder()
    {
        std::error_code ignored;
        fs::remove_all(m_path, ignored);
    }

    [[nodiscard]] std::string filePath() const { return m_path + "/places.db"; }

private:
    std::string m_path;
};

/// In a folder without the sticky bit, anybody who may write to it could replace the file that is put there.
void requireSafe(const fs::path &folder)
{
    struct stat status = {};
    if (::stat(folder.c_str(), &status) != 0)
        fail("the folder cannot be looked at");
    if ((status.st_mode & S_IWOTH) != 0 && (status.st_mode & S_ISVTX) == 0)
        throw std::invalid_argument("everybody may write to that folder, and it has no sticky bit");
}

void sync(const std::string &path)
{
    const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    if (!file.isOpen() || ::fsync(file.get()) != 0)
        fail("cannot be brought to the disk");
}

bool isDatabase(const std::string &path)
{
    constexpr char MAGIC[] = "SQLite format 3";
    std::array<char, sizeof MAGIC> start = {};
    const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    return file.isOpen() && fs::is_regular_file(path)
           && ::read(file.get(), start.data(), start.size()) == static_cast<ssize_t>(start.size())
           && std::memcmp(start.data(), MAGIC, sizeof MAGIC) == 0;
}

void copy(SQLite::Database &to, SQLite::Database &from, Deadline deadline)
{
    SQLite::Backup backup(to, from);
    for (int result = SQLITE_OK; result != SQLITE_DONE;) {
        result = backup.executeStep(PAGES_PER_STEP);
        if (result == SQLITE_BUSY || result == SQLITE_LOCKED)
            throw SQLite::Exception("another program is at work on it", result);
        if (hasPassed(deadline))
            throw SQLite::Exception("copying took too long", SQLITE_INTERRUPT);
    }
}

/// Runs a copy; whatever it throws is a failure of that kind, or a lack of time.
ReturnCode attempt(const char *what, const std::string &path, ReturnCode failure, const std::function<void()> &run)
{
    try {
        run();
        return ReturnCode::Success;
    } catch (const SQLite::Exception &error) {
        logError("%s %s failed: %s", what, path.c_str(), error.what());
        return error.getErrorCode() == SQLITE_INTERRUPT ? ReturnCode::TookTooLong : failure;
    } catch (const std::exception &error) {
        logError("%s %s failed: %s", what, path.c_str(), error.what());
        return failure;
    }
}

} // namespace

BackupKeeper::BackupKeeper(std::string database, StoreShared &shared)
    : m_database(std::move(database))
    , m_shared(shared)
{}

ReturnCode BackupKeeper::backUp(const std::string &path, Deadline deadline)
{
    const std::unique_lock<std::mutex> turn(m_copying, std::try_to_lock);
    if (!turn)
        return ReturnCode::Busy;
    return attempt("backup to", path, ReturnCode::BackupFailed, [&] { writeCopy(path, deadline); });
}

ReturnCode BackupKeeper::restore(const std::string &path, Deadline deadline)
{
    const std::unique_lock<std::mutex> turn(m_copying, std::try_to_lock);
    if (!turn)
        return ReturnCode::Busy;
    return attempt("restore from", path, ReturnCode::RestoreFailed, [&] { swapIn(path, deadline); });
}

void BackupKeeper::requireUsablePath(const std::string &path) const
{
    // The client's folder is not the service's, so a relative path would be another file than was meant.
    if (path.empty() || path.front() != '/' || path.find('\0') != std::string::npos)
        throw std::invalid_argument("the path is not absolute");
    if (isFileOf(m_database, path))
        throw std::invalid_argument("that is the database in use, or belongs to it");
}

void BackupKeeper::writeCopy(const std::string &path, Deadline deadline) const
{
    requireUsablePath(path);
    requireSafe(fs::path(path).parent_path());
    requirePlacesFile(path);
    const PrivateFolder folder(path);
    const std::string fresh = folder.filePath();
    {
        SQLite::Database live(m_database, SQLite::OPEN_READONLY);
        SQLite::Database target(fresh, SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
        // What is read once stays as it is while others write; else each write would start the copy anew.
        SQLite::Transaction snapshot(live);
        live.execAndGet("SELECT count(*) FROM sqlite_master");
        copy(target, live, deadline);
        // One file that holds everything.
        target.exec("PRAGMA journal_mode = DELETE");
    }
    forgetRemovedWords(fresh, deadline);
    sync(fresh);
    if (std::rename(fresh.c_str(), path.c_str()) != 0)
        fail("cannot be put in place");
    sync(fs::path(path).parent_path());
}

void BackupKeeper::swapIn(const std::string &path, Deadline deadline) const
{
    requireUsablePath(path);
    if (!isDatabase(path))
        throw std::invalid_argument("no database is there");
    // Checked is a copy that nobody else can change, and that is what is swapped in.
    const PrivateFolder folder(m_database + "-restore");
    const std::string candidate = folder.filePath();
    {
        SQLite::Database source(path, SQLite::OPEN_READONLY);
        SQLite::Database target(candidate, SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
        distrust(source);
        distrust(target);
        copy(target, source, deadline);
        Store::requirePlaces(target);
    }
    StoreShared unshared;
    Store checked(candidate, unshared, deadline);
    checked.requireSoundness();

    StoreShared unlocked;
    Store live(m_database, unlocked);
    checked.packLike(live);
    const std::unique_lock<std::timed_mutex> lock(m_shared.writeLock, deadline);
    if (!lock)
        throw std::runtime_error("other writers took too long");
    checked.keepIdsOf(live);
    checked.copyOver(live);
    m_shared.words.expire();
}

} // namespace placesd
