// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "sources/Readable.h"

#include "Channel.h"

#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>

namespace placesd
{

using vela::system::channel::Descriptor;

namespace
{

/// Opens without blocking on a pipe.
Descriptor requireOpen(const std::string &path, int flags)
{
    Descriptor file(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | flags));
    if (!file.isOpen())
        throw std::system_error(errno, std::generic_category(), path);
    return file;
}

} // namespace

void requireReadableFile(const std::string &path)
{
    const Descriptor file = requireOpen(path, 0);
    struct stat status = {};
    if (::fstat(file.get(), &status) == 0 && S_ISDIR(status.st_mode))
        throw std::system_error(EISDIR, std::generic_category(), path);
}

void requireReadableFolder(const std::string &path)
{
    requireOpen(path, O_DIRECTORY);
}

} // namespace placesd
