// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "store/Backup.h"

#include "Channel.h"
#include "Log.h"
#include "store/DatabaseFile.h"
#include "store/FileCopy.h"
#include "store/PrivateFolder.h"
#include "store/SqlFunctions.h"
#include "store/Store.h"

#include <array>
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

[[noreturn]] void fail(const char *what)
{
    throw std::system_error(errno, std::generic_category(), what);
}

/// In a folder without the sticky bit, anybody who may write to it could replace the file that is put there.
void requireSafe(const fs::path &folder)
{
    struct stat status = {};
    if (::stat(folder.c_str(), &status) != 0)
        fail("the folder cannot be looked at");
    if ((status.st_mode & S_IWOTH) != 0 && (status.st_mode & S_ISVTX) == 0)
        throw std::invalid_argument("everybody may write to that folder, and it has no sticky bit");
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
    writeSnapshot(m_database, fresh, deadline);
    forgetRemovedWords(fresh, deadline);
    moveIntoPlace(fresh, path);
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
        copyPages(target, source, deadline);
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
