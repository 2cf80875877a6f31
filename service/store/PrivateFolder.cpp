// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "store/PrivateFolder.h"

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace placesd
{

PrivateFolder::PrivateFolder(const std::string &neighbour)
    : m_path(neighbour + ".XXXXXX")
{
    if (!::mkdtemp(m_path.data()))
        throw std::system_error(errno, std::generic_category(),
                                "the service cannot write to the folder of " + neighbour);
}

PrivateFolder::~PrivateFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

} // namespace placesd
