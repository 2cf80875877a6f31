// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

namespace placesd
{

/// A folder of mode 0700 beside a file; removed with its content. Other users cannot put files or links there.
class PrivateFolder
{
public:
    /// Throws std::system_error when the folder cannot be created.
    explicit PrivateFolder(const std::string &neighbour);
    PrivateFolder(const PrivateFolder &) = delete;
    PrivateFolder &operator=(const PrivateFolder &) = delete;
    ~PrivateFolder();

    /// Path for a database in the folder.
    [[nodiscard]] std::string filePath() const { return m_path + "/places.db"; }

private:
    std::string m_path;
};

} // namespace placesd
