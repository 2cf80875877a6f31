// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Channel.h"

#include <cstdint>
#include <string>

namespace placesd
{

/// A number that grows with each change and each start of the service, so that clients notice changes. It is in a file
/// that clients read and watch themselves: the cost is a write of eight bytes per transaction, and nothing for read
/// requests. Used by one thread at a time.
class DataVersion
{
public:
    /// Creates the file, readable by everybody with access to its folder, or continues from the number in it. Clients
    /// notice the start.
    explicit DataVersion(const std::string &path);

    /// Call it after each commit, before the acknowledgement. After a failure, which is logged, clients are not
    /// notified until the next start.
    void advance();

private:
    bool write(std::int64_t version);
    void giveUp();

    const std::string m_path;
    vela::system::channel::Descriptor m_file;
    std::int64_t m_version = 0;
};

} // namespace placesd
