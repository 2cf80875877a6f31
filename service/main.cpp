// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "Limits.h"
#include "protocol/ProtocolTypes.h"
#include "Server.h"
#include "SessionObject.h"

#include <CLI/CLI.hpp>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <iostream>

#include <fcntl.h>
#include <sys/stat.h>
#include <systemd/sd-daemon.h>

namespace
{

using orix_places_protocol::ProtocolNames;
using placesd::Server;
using vela::system::channel::Descriptor;

constexpr unsigned int OWNER_ONLY = 0600;
constexpr unsigned int EVERYBODY = 0666;
/// Time between two looks for idle connections.
constexpr timespec SWEEP_INTERVAL = {5, 0};

std::string defaultDatabase()
{
    if (const char *data = std::getenv("XDG_DATA_HOME"); data && *data)
        return std::string(data) + "/vela/places.db";
    const char *home = std::getenv("HOME");
    return std::string(home ? home : "") + "/.local/share/vela/places.db";
}

/// The sockets that systemd opened for this process, by their names; empty when it opened none.
std::vector<Server::Listener> inheritedListeners()
{
    char **names = nullptr;
    const int count = sd_listen_fds_with_names(0, &names);
    std::vector<Server::Listener> listeners;
    for (int i = 0; i < count; ++i) {
        const bool external = std::string(names[i]) == ProtocolNames::external;
        const int socket = SD_LISTEN_FDS_START + i;
        ::fcntl(socket, F_SETFL, ::fcntl(socket, F_GETFL) | O_NONBLOCK);
        listeners.push_back({Descriptor(socket), external});
        std::free(names[i]); // NOLINT(cppcoreguidelines-no-malloc): systemd's allocation
    }
    std::free(names); // NOLINT(cppcoreguidelines-no-malloc)
    return listeners;
}

std::vector<Server::Listener> ownListeners()
{
    std::vector<Server::Listener> listeners;
    listeners.push_back({placesd::listenOn(ProtocolNames::internal, OWNER_ONLY), false});
    listeners.push_back({placesd::listenOn(ProtocolNames::external, EVERYBODY), true});
    return listeners;
}

sigset_t stopSignals()
{
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGTERM);
    sigaddset(&signals, SIGINT);
    return signals;
}

void serve(const Server::Settings &settings)
{
    Descriptor lock;
    std::vector<Server::Listener> listeners = inheritedListeners();
    if (listeners.empty()) {
        lock = placesd::takeChannelFolder();
        listeners = ownListeners();
    }
    Server server(std::move(listeners), settings);
    sd_notify(0, "READY=1");
    const sigset_t signals = stopSignals();
    while (sigtimedwait(&signals, nullptr, &SWEEP_INTERVAL) < 0)
        server.dropIdleConnections();
    sd_notify(0, "STOPPING=1");
}

} // namespace

int main(int argc, char **argv)
{
    CLI::App app("A places service: keeps places in an SQLite file and answers for them on the channels \"places\" and "
                 "\"places.external\".",
                 "placesd");
    Server::Settings settings{defaultDatabase(), {}};
    std::string ppsRoot;
    app.add_option("--database", settings.database, "File that holds the places; made when it is not there")
        ->capture_default_str();
    app.add_option("--pps-root", ppsRoot, "Folder to write a session object to; its key is then asked for");
    CLI11_PARSE(app, argc, argv);

    // Threads inherit the mask, so the signals come to nobody but the wait in serve().
    const sigset_t signals = stopSignals();
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    ::umask(0077);
    try {
        if (const auto folder = std::filesystem::path(settings.database).parent_path(); !folder.empty())
            std::filesystem::create_directories(folder);
        if (!ppsRoot.empty())
            settings.sessionKey = placesd::publishSessionKey(ppsRoot);
        serve(settings);
        return EXIT_SUCCESS;
    } catch (const std::exception &error) {
        std::cerr << "placesd: " << error.what() << "\n";
        return EXIT_FAILURE;
    }
}
