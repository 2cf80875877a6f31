// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "store/Reserve.h"

#include "Channel.h"
#include "Deadline.h"
#include "Limits.h"
#include "Log.h"

#include <SQLiteCpp/Exception.h>

#include <algorithm>
#include <filesystem>

#include <fcntl.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

namespace placesd
{

using vela::system::channel::Descriptor;
namespace fs = std::filesystem;

namespace
{

constexpr mode_t OWNER_ONLY = 0600;

dev_t deviceOf(const fs::path &path)
{
    struct stat status = {};
    return ::stat(path.c_str(), &status) == 0 ? status.st_dev : 0;
}

/// The path of a file without symbolic links; the file need not exist.
fs::path realPathOf(const std::string &file)
{
    std::error_code ignored;
    return fs::weakly_canonical(fs::absolute(file, ignored), ignored);
}

/// Mount point of the file system of a file.
fs::path mountPointOf(const std::string &file)
{
    fs::path folder = realPathOf(file).parent_path();
    const dev_t device = deviceOf(folder);
    while (folder.has_relative_path() && deviceOf(folder.parent_path()) == device)
        folder = folder.parent_path();
    return folder;
}

/// Bytes that this process may still write to a file system, in whole blocks.
long long freeBytes(int file)
{
    struct statvfs state = {};
    return ::fstatvfs(file, &state) == 0
               ? static_cast<long long>(state.f_bavail) * static_cast<long long>(state.f_frsize)
               : 0;
}

long long sizeOf(int file)
{
    struct stat status = {};
    return ::fstat(file, &status) == 0 ? static_cast<long long>(status.st_size) : 0;
}

} // namespace

bool isLackOfRoom(const SQLite::Exception &error)
{
    const int kind = error.getExtendedErrorCode();
    return error.getErrorCode() == SQLITE_FULL || kind == SQLITE_IOERR_WRITE || kind == SQLITE_IOERR_SHMSIZE;
}

Reserve::Reserve(const std::string &database)
    : m_database(database)
    , m_missing(limits::RESERVE_SIZE)
{}

/// Beside the target of a link. A new database exists only after it is opened.
std::string Reserve::path() const
{
    return realPathOf(m_database).string() + "-reserve";
}

long long Reserve::fill()
{
    if (m_missing == 0)
        return 0;
    const Descriptor file(::open(path().c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, OWNER_ONLY));
    if (!file.isOpen())
        return m_missing;
    const long long size = sizeOf(file.get());
    const long long wanted = std::min(limits::RESERVE_SIZE, size + freeBytes(file.get()));
    if (wanted > size)
        ::posix_fallocate(file.get(), 0, wanted);
    m_missing = std::max(0LL, limits::RESERVE_SIZE - sizeOf(file.get()));
    return m_missing;
}

bool Reserve::release()
{
    m_missing = limits::RESERVE_SIZE;
    return ::unlink(path().c_str()) == 0;
}

void Reserve::report()
{
    const auto now = Clock::now().time_since_epoch();
    auto next = m_nextReport.load();
    if (now.count() < next
        || !m_nextReport.compare_exchange_strong(next, (now + Clock::duration(limits::REPORT_INTERVAL)).count()))
        return;
    logError("no room for %s: the file system at %s is full; places can be removed", m_database.c_str(),
             mountPointOf(path()).c_str());
}

} // namespace placesd
