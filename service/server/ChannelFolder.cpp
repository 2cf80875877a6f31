// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "server/ChannelFolder.h"

#include <cerrno>
#include <filesystem>
#include <stdexcept>
#include <system_error>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace placesd
{

namespace channel = vela::system::channel;
namespace fs = std::filesystem;

namespace
{

constexpr mode_t WRITABLE_BY_OTHERS = S_IWGRP | S_IWOTH;

constexpr char ADVICE[] = "; name another folder with VELA_CHANNEL_DIR";

[[noreturn]] void fail(const std::string &what)
{
    throw std::runtime_error(what + ": " + std::generic_category().message(errno) + ADVICE);
}

[[noreturn]] void refuse(const fs::path &path, const char *why)
{
    throw std::runtime_error(path.string() + " " + why + ADVICE);
}

struct stat statusOf(const fs::path &path)
{
    struct stat status = {};
    if (::lstat(path.c_str(), &status) != 0)
        fail("cannot read the state of " + path.string());
    return status;
}

/// Throws when a user other than root and this one could replace a part of the path.
void requireSafe(const fs::path &path)
{
    fs::path part;
    for (const fs::path &name : path) {
        part /= name;
        const struct stat status = statusOf(part);
        const bool isOwn = status.st_uid == 0 || status.st_uid == ::geteuid();
        const bool isLink = S_ISLNK(status.st_mode);
        const bool isProtected = (status.st_mode & WRITABLE_BY_OTHERS) == 0 || (status.st_mode & S_ISVTX) != 0;
        if (!isOwn || (!isLink && !isProtected))
            refuse(part, "belongs to another user, or others may write to it");
        if (isLink)
            requireSafe(fs::canonical(part));
    }
}

void requireOwn(const fs::path &folder)
{
    const struct stat status = statusOf(folder);
    if (!S_ISDIR(status.st_mode))
        refuse(folder, "is not a folder");
    if (status.st_uid != ::geteuid() || (status.st_mode & WRITABLE_BY_OTHERS) != 0)
        refuse(folder, "belongs to another user, or others may write to it");
}

} // namespace

channel::Descriptor takeChannelFolder()
{
    fs::path folder = fs::absolute(channel::folder());
    if (!folder.has_filename())
        folder = folder.parent_path();
    fs::create_directories(folder.parent_path());
    requireSafe(folder.parent_path());
    if (::mkdir(folder.c_str(), 0700) != 0 && errno != EEXIST)
        fail("cannot create " + folder.string());
    requireOwn(folder);
    const std::string path = folder / "placesd.lock";
    channel::Descriptor lock(::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
    if (!lock.isOpen() || ::flock(lock.get(), LOCK_EX | LOCK_NB) != 0)
        fail("cannot lock " + path + ", which another placesd may have locked");
    return lock;
}

bool removeSocket(const std::string &path)
{
    struct stat status = {};
    if (::lstat(path.c_str(), &status) != 0)
        return errno == ENOENT;
    if (!S_ISSOCK(status.st_mode)) {
        errno = EEXIST;
        return false;
    }
    return ::unlink(path.c_str()) == 0;
}

} // namespace placesd
