// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "dataversion.h"

#include "Channel.h"
#include "Export.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <new>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace channel = vela::system::channel;

namespace
{

/// A foreign file at this path must neither block open() nor redirect it.
constexpr int OPEN_FLAGS = O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK;

std::int64_t versionIn(const std::string &path, uid_t owner)
{
    const channel::Descriptor file(::open(path.c_str(), OPEN_FLAGS));
    struct stat status = {};
    if (!file.isOpen() || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)
        || (status.st_uid != 0 && status.st_uid != owner))
        return 0;
    std::int64_t version = 0;
    return ::pread(file.get(), &version, sizeof version, 0) == sizeof version ? version : 0;
}

} // namespace

VELA_SYSTEM_EXPORT long long dataversion_get(const char *name)
{
    try {
        uid_t owner = 0;
        const std::string path = channel::versionPath(name ? name : "");
        return path.empty() || !channel::isFolderTrusted(owner) ? 0 : versionIn(path, owner);
    } catch (const std::bad_alloc &) {
        return 0;
    }
}

VELA_SYSTEM_EXPORT int dataversion_path(const char *name, char *path, int capacity)
{
    try {
        const std::string full = channel::versionPath(name ? name : "");
        if (full.empty())
            return -1;
        if (!path || capacity < 0 || full.size() >= static_cast<std::size_t>(capacity)) {
            errno = ENAMETOOLONG;
            return -1;
        }
        std::copy_n(full.c_str(), full.size() + 1, path);
        return 0;
    } catch (const std::bad_alloc &) {
        errno = ENOMEM;
        return -1;
    }
}
