// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "server/SessionObject.h"

#include "Channel.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>

#include <fcntl.h>
#include <sys/random.h>
#include <unistd.h>

namespace placesd
{

namespace
{

/// Clients write their request over the first bytes of the object and read on after them.
constexpr std::size_t REQUEST_SLOT = 30;
constexpr std::size_t KEY_BYTES = 16;

[[noreturn]] void fail(const std::string &what)
{
    throw std::system_error(errno, std::generic_category(), what);
}

std::string makeKey()
{
    std::array<unsigned char, KEY_BYTES> bytes = {};
    if (::getrandom(bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size()))
        fail("cannot create a session key");
    std::string key;
    for (const unsigned char byte : bytes) {
        constexpr char DIGITS[] = "0123456789abcdef";
        key += DIGITS[byte >> 4];
        key += DIGITS[byte & 15];
    }
    return key;
}

/// Writes `text` to a new file that only this user can read; replaces an old file.
void replaceFile(const std::string &path, const std::string &text)
{
    ::unlink(path.c_str());
    const vela::system::channel::Descriptor file(
        ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (!file.isOpen())
        fail("cannot create " + path);
    for (std::size_t written = 0; written < text.size();) {
        const ssize_t count = ::write(file.get(), text.data() + written, text.size() - written);
        if (count < 0 && errno != EINTR)
            fail("cannot write " + path);
        written += static_cast<std::size_t>(std::max<ssize_t>(count, 0));
    }
}

} // namespace

std::string publishSessionKey(const std::string &root)
{
    const std::string folder = root + "/services/pim";
    std::filesystem::create_directories(folder);
    const std::string path = folder + "/session?wait";
    const std::string fresh = path + ".new";
    std::string key = makeKey();
    replaceFile(fresh, std::string(REQUEST_SLOT, '\0') + "@session\njson:{\"session\":\"" + key + "\"}\n");
    if (std::rename(fresh.c_str(), path.c_str()) != 0)
        fail("cannot rename the new session object to " + path);
    return key;
}

} // namespace placesd
