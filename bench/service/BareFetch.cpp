// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "BareFetch.h"

#include <msgclient.h>
#include <unistd.h>

namespace bench
{

namespace
{

/// Rows of the table: enough for a tree of three levels.
constexpr int ROWS = 100000;
/// The server's channel, in the folder of the service's channels.
constexpr char CHANNEL[] = "bare";

std::string framed(const std::string &message)
{
    const auto length = static_cast<std::uint32_t>(message.size());
    return std::string(reinterpret_cast<const char *>(&length), sizeof length) + message;
}

/// Starts a server in a folder with other channels; the folder stays selected.
std::unique_ptr<FixedServer> serverIn(const std::string &folder, const std::string &reply)
{
    auto server = std::make_unique<FixedServer>(framed(reply));
    ::setenv("VELA_CHANNEL_DIR", folder.c_str(), 1);
    if (::symlink(server->address().sun_path, (folder + "/" + CHANNEL).c_str()) != 0)
        return nullptr;
    return server;
}

} // namespace

BareFetch::BareFetch(std::string request, const std::string &reply, const std::string &folder)
    : m_request(std::move(request))
    , m_server(serverIn(folder, reply))
    , m_database(folder + "/bare.db", SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE)
{
    m_database.exec("CREATE TABLE bare(id INTEGER PRIMARY KEY, record BLOB)");
    SQLite::Transaction transaction(m_database);
    SQLite::Statement insert(m_database, "INSERT INTO bare(record) VALUES (?1)");
    for (int i = 0; i < ROWS; ++i) {
        insert.bindNoCopy(1, reply.data(), static_cast<int>(reply.size()));
        insert.exec();
        insert.reset();
    }
    transaction.commit();
    m_row = std::make_unique<SQLite::Statement>(m_database, "SELECT record FROM bare WHERE id = ?1");
}

bool BareFetch::exchange()
{
    _msgclient_open *channel = msgclient_open(CHANNEL, 0, 2);
    if (!channel)
        return false;
    std::array<char, 4096> reply;
    int length = 0;
    const int status = msgclient_putget(channel, m_request.data(), static_cast<int>(m_request.size()), reply.data(),
                                        static_cast<int>(reply.size()), &length, 0);
    msgclient_close(channel);
    return status == MSGCLIENT_OK;
}

bool BareFetch::readRow(std::int64_t number)
{
    m_row->reset();
    m_row->bind(1, 1 + number % ROWS);
    return m_row->executeStep() && !m_row->getColumn(0).getString().empty();
}

} // namespace bench
