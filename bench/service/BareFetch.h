// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "FixedServer.h"

#include <SQLiteCpp/SQLiteCpp.h>

#include <memory>

namespace bench
{

/// Lower bound of a fetch by id: an exchange of the same sizes over the channel with a server that does nothing else,
/// and reading a row of the same size from a table with no other data.
class BareFetch
{
public:
    /// @param request the request for the place.
    /// @param reply the reply of the service.
    /// @param folder the selected channel folder, which also gets the server and the table.
    BareFetch(std::string request, const std::string &reply, const std::string &folder);

    /// False on a failure.
    bool exchange();
    bool readRow(std::int64_t number);

private:
    const std::string m_request;
    const std::unique_ptr<FixedServer> m_server;
    SQLite::Database m_database;
    std::unique_ptr<SQLite::Statement> m_row;
};

} // namespace bench
