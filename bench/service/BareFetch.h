// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "FixedServer.h"

#include <SQLiteCpp/SQLiteCpp.h>

#include <memory>

namespace bench
{

/// The least that fetching a place by its id takes: an exchange of the same sizes over the channel, with a server that
/// does nothing else, and a row of the same size read from a table of nothing else.
class BareFetch
{
public:
    /// @param request what asks for the place.
    /// @param reply what the service answers.
    /// @param folder the selected folder of channels, which takes the server's and the table.
    BareFetch(std::string request, const std::string &reply, const std::string &folder);

    /// Both false on a failure.
    bool exchange();
    bool readRow(std::int64_t number);

private:
    const std::string m_request;
    const std::unique_ptr<FixedServer> m_server;
    SQLite::Database m_database;
    std::unique_ptr<SQLite::Statement> m_row;
};

} // namespace bench
