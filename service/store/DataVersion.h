// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Channel.h"

#include <cstdint>
#include <string>

namespace placesd
{

/// The number by which clients tell that something has changed: it grows with each change and each start of the
/// service. It is kept in a file that clients read and watch by themselves, so it costs a write of eight bytes for each
/// transaction and nothing for a request that reads. For one thread at a time.
class DataVersion
{
public:
    /// Makes the file, which everybody may read who may enter its folder, or goes on from the number in it: so clients
    /// are told of a start.
    explicit DataVersion(const std::string &path);

    /// To be called after each commit and before it is acknowledged. After a failure, which is logged, clients are told
    /// of nothing until the next start.
    void advance();

private:
    bool write(std::int64_t version);
    void giveUp();

    const std::string m_path;
    vela::system::channel::Descriptor m_file;
    std::int64_t m_version = 0;
};

} // namespace placesd
