// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

namespace placesd
{

/// A folder of mode 0700 beside a file; removed with all that is in it. Nobody else can put a file or a link there.
class PrivateFolder
{
public:
    /// Throws std::system_error when no folder can be made there.
    explicit PrivateFolder(const std::string &neighbour);
    PrivateFolder(const PrivateFolder &) = delete;
    PrivateFolder &operator=(const PrivateFolder &) = delete;
    ~PrivateFolder();

    /// A database in the folder.
    [[nodiscard]] std::string filePath() const { return m_path + "/places.db"; }

private:
    std::string m_path;
};

} // namespace placesd
