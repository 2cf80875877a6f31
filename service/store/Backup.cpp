// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "store/Backup.h"

#include "Channel.h"
#include "Log.h"
#include "store/DatabaseFile.h"
#include "store/FileCopy.h"
#include "store/PrivateFolder.h"
#include "store/Reserve.h"
#include "store/SqlFunctions.h"
#include "store/StorageReason.h"
#include "store/Store.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <functional>
#include <optional>
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

/// Maximum part of a path in a reason, in bytes: its end, which has the file name.
constexpr std::size_t SHOWN_PATH = 512;

std::string shown(const std::string &path)
{
    return path.size() <= SHOWN_PATH ? path : "..." + path.substr(path.size() - SHOWN_PATH);
}

[[noreturn]] void refuse(const std::string &path, const std::string &why)
{
    throw std::invalid_argument(shown(path) + " " + why);
}

[[noreturn]] void fail(const std::string &path, const char *what, const char *advice)
{
    const int error = errno;
    refuse(path, what + (": " + std::generic_category().message(error)) + advice);
}

/// In a folder without the sticky bit, other users with write access could replace the new file.
void requireSafe(const fs::path &folder)
{
    struct stat status = {};
    if (::stat(folder.c_str(), &status) != 0)
        fail(folder, "is not a folder that the service can use", "; make it, or name a file in another folder");
    if (::access(folder.c_str(), W_OK | X_OK) != 0)
        fail(folder, "is a folder that the service may not write to", "; name a file in another folder");
    if ((status.st_mode & S_IWOTH) != 0 && (status.st_mode & S_ISVTX) == 0)
        refuse(folder, "is a folder that everybody may write to and has no sticky bit; name a file in another folder");
}

/// Describes a path that is neither a regular file nor missing.
void requireRegular(const std::string &path, mode_t mode)
{
    if (S_ISLNK(mode))
        refuse(path, "is a symbolic link; name the file that it leads to");
    if (S_ISDIR(mode))
        refuse(path, "is a folder; name a file");
    if (!S_ISREG(mode))
        refuse(path, "is no regular file, but a device, pipe or socket; name another file");
}

/// A backup replaces only a backup or an empty file.
void requireReplaceable(const std::string &path)
{
    struct stat status = {};
    if (::lstat(path.c_str(), &status) != 0)
        return;
    requireRegular(path, status.st_mode);
    try {
        requirePlacesFile(path);
    } catch (const std::runtime_error &error) {
        throw std::invalid_argument(error.what() + std::string("; name a new file or a backup"));
    }
}

void requireDatabase(const std::string &path)
{
    constexpr char MAGIC[] = "SQLite format 3";
    std::array<char, sizeof MAGIC> start = {};
    const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat status = {};
    if (!file.isOpen() || ::fstat(file.get(), &status) != 0)
        fail(path, "cannot be opened by the service", "; name a file that a backup made");
    requireRegular(path, status.st_mode);
    if (::read(file.get(), start.data(), start.size()) != static_cast<ssize_t>(start.size())
        || std::memcmp(start.data(), MAGIC, sizeof MAGIC) != 0)
        refuse(path, "is not an SQLite file; name a file that a backup created");
}

/// Runs a step of a copy. An error of SQLite gets the path of its file.
template <typename Work>
void withPaths(const std::string &from, const std::string &to, const Work &work)
{
    try {
        work();
    } catch (const SQLite::Exception &error) {
        const bool isTarget = isLackOfRoom(error) || error.getErrorCode() == SQLITE_READONLY;
        throw SQLite::Exception(storageReason(shown(isTarget ? to : from), error), error.getErrorCode());
    } catch (const std::system_error &) {
        throw; // it has the path
    } catch (const std::runtime_error &error) {
        throw std::runtime_error(shown(from) + ": " + error.what() + "; name another backup");
    }
}

/// Runs a copy; converts an exception to the code `failure` or to TookTooLong.
Status attempt(const char *what, const std::string &path, ReturnCode failure, const std::function<void()> &run)
{
    const auto failed = [&](ReturnCode code, const char *reason) {
        logError("%s %s failed: %s", what, path.c_str(), reason);
        return Status(code, reason);
    };
    try {
        run();
        return ReturnCode::Success;
    } catch (const SQLite::Exception &error) {
        return failed(error.getErrorCode() == SQLITE_INTERRUPT ? ReturnCode::TookTooLong : failure, error.what());
    } catch (const std::exception &error) {
        return failed(failure, error.what());
    }
}

/// A backup with a problem is not restored.
[[noreturn]] void refuseBackup(const std::string &problem, qint64 place)
{
    throw std::runtime_error("it is damaged: "
                             + (place > 0 ? "place " + std::to_string(place) + ": " + problem : problem));
}

Status copyInProgress()
{
    return {ReturnCode::Busy, "another backup or restore is running; try again when it is done"};
}

} // namespace

BackupKeeper::BackupKeeper(std::string database, StoreShared &shared)
    : m_database(std::move(database))
    , m_shared(shared)
{}

Status BackupKeeper::backUp(const std::string &path, Deadline deadline)
{
    const std::unique_lock<std::mutex> turn(m_copying, std::try_to_lock);
    if (!turn)
        return copyInProgress();
    return attempt("backup to", path, ReturnCode::BackupFailed, [&] { writeCopy(path, deadline); });
}

Status BackupKeeper::restore(const std::string &path, Deadline deadline)
{
    const std::unique_lock<std::mutex> turn(m_copying, std::try_to_lock);
    if (!turn)
        return copyInProgress();
    if (m_shared.damage && m_shared.damage->isDamaged())
        return {ReturnCode::StorageFailed, "the database is damaged; " + remedyFor(m_database)};
    return attempt("restore from", path, ReturnCode::RestoreFailed, [&] { replaceContent(path, deadline); });
}

void BackupKeeper::requireUsablePath(const std::string &path) const
{
    // Client and service can have different working folders, so a relative path could be another file.
    if (path.empty() || path.front() != '/' || path.find('\0') != std::string::npos)
        refuse(path.empty() ? "an empty path" : path, "is not an absolute path; give a path that starts with /");
    if (isFileOf(m_database, path))
        refuse(path, "is the database in use, or belongs to it; name another file");
}

void BackupKeeper::writeCopy(const std::string &path, Deadline deadline) const
{
    requireUsablePath(path);
    if (m_shared.damage && m_shared.damage->isDamaged())
        throw std::runtime_error("the database is damaged, so a copy of it would be damaged too");
    requireSafe(fs::path(path).parent_path());
    requireReplaceable(path);
    withPaths(m_database, path, [&] {
        const PrivateFolder folder(path);
        const std::string fresh = folder.filePath();
        writeSnapshot(m_database, fresh, deadline);
        purgeRemovedWords(fresh, deadline);
        moveIntoPlace(fresh, path);
    });
}

void BackupKeeper::replaceContent(const std::string &path, Deadline deadline) const
{
    requireUsablePath(path);
    requireDatabase(path);
    // Check and restore a private copy, which other processes cannot change in between.
    const PrivateFolder folder(m_database + "-restore");
    const std::string candidate = folder.filePath();
    StoreShared unshared;
    std::optional<Store> checked;
    withPaths(path, m_database, [&] {
        {
            SQLite::Database source(path, SQLite::OPEN_READONLY);
            SQLite::Database target(candidate, SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
            distrust(source);
            distrust(target);
            copyPages(target, source, deadline);
            Store::requirePlaces(target);
        }
        checked.emplace(candidate, unshared, deadline);
        checked->checkPages(refuseBackup);
        checked->check(refuseBackup);
    });
    withPaths(m_database, m_database, [&] {
        StoreShared unlocked;
        Store live(m_database, unlocked);
        checked->packLike(live);
        const std::unique_lock<std::timed_mutex> lock(m_shared.writeLock, deadline);
        if (!lock)
            throw std::system_error(std::make_error_code(std::errc::timed_out),
                                    m_database + ": other writers did not finish in time");
        checked->keepIdsOf(live);
        checked->copyOver(live);
        m_shared.words.expire();
        m_shared.advanceVersion();
    });
}

} // namespace placesd
