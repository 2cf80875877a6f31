// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "store/DataVersion.h"

#include "Log.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <limits>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace placesd
{

namespace
{

constexpr mode_t READABLE_BY_ALL = 0644;

/// By the clock, a new start gets a higher number than earlier starts even when the file is missing.
std::int64_t microsecondsNow()
{
    using namespace std::chrono;
    return duration_cast<microseconds>(system_clock::now().time_since_epoch()).count();
}

} // namespace

DataVersion::DataVersion(const std::string &path)
    : m_path(path)
    , m_file(::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, READABLE_BY_ALL))
{
    std::int64_t before = 0;
    const bool isRead = m_file.isOpen() && ::fchmod(m_file.get(), READABLE_BY_ALL) == 0
                        && ::pread(m_file.get(), &before, sizeof before, 0) >= 0;
    constexpr std::int64_t MOST = std::numeric_limits<std::int64_t>::max() / 2; // never reached by a valid number
    m_version = std::max(microsecondsNow(), before < MOST ? before + 1 : 0);
    if (!isRead || !write(m_version))
        giveUp();
}

void DataVersion::advance()
{
    if (m_file.isOpen() && !write(++m_version))
        giveUp();
}

bool DataVersion::write(std::int64_t version)
{
    return ::pwrite(m_file.get(), &version, sizeof version, 0) == sizeof version;
}

void DataVersion::giveUp()
{
    logError("%s cannot be written: %s; clients are not notified of changes until the next start", m_path.c_str(),
             std::strerror(errno));
    m_file.reset();
}

} // namespace placesd
