// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "server/Program.h"

#include "Limits.h"
#include "Log.h"
#include "places/Version.h"
#include "protocol/ProtocolTypes.h"
#include "server/ChannelFolder.h"
#include "server/Server.h"
#include "server/SessionObject.h"
#include "sources/ContactBook.h"
#include "sources/Gazetteer.h"
#include "sources/Readable.h"
#include "store/Check.h"
#include "store/DamageReport.h"
#include "store/DatabaseFile.h"
#include "store/Repair.h"
#include "store/StorageReason.h"

#include <QtCore/QThread>

#include <CLI/CLI.hpp>

#include <algorithm>
#include <array>
#include <cctype>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <iostream>

#include <fcntl.h>
#include <malloc.h>
#include <poll.h>
#include <sqlite3.h>
#include <sys/eventfd.h>
#include <sys/prctl.h>
#include <sys/signalfd.h>
#include <sys/stat.h>
#include <systemd/sd-daemon.h>
#include <unistd.h>

namespace placesd
{

using orix_places_protocol::ProtocolNames;
using vela::system::channel::Descriptor;
namespace fs = std::filesystem;

namespace
{

/// Exit status for invalid arguments.
constexpr int WRONG_USE = 2;
/// Exit status of a check with problems, and of a repair with losses.
constexpr int DAMAGED = 3;
constexpr unsigned int OWNER_ONLY = 0600;
constexpr unsigned int EVERYBODY = 0666;
/// Time between two checks for idle connections.
constexpr std::chrono::duration<int, std::milli> SWEEP_INTERVAL{5000};

std::string defaultDatabase()
{
    if (const char *data = std::getenv("XDG_DATA_HOME"); data && *data)
        return std::string(data) + "/vela/places.db";
    const char *home = std::getenv("HOME");
    return std::string(home ? home : "") + "/.local/share/vela/places.db";
}

/// The sockets inherited from systemd, by name; empty when there are none.
std::vector<Server::Listener> inheritedListeners()
{
    char **names = nullptr;
    const int count = sd_listen_fds_with_names(0, &names);
    std::vector<Server::Listener> listeners;
    for (int i = 0; i < count; ++i) {
        const bool external = std::string(names[i]) == ProtocolNames::external;
        const int socket = SD_LISTEN_FDS_START + i;
        ::fcntl(socket, F_SETFL, ::fcntl(socket, F_GETFL) | O_NONBLOCK);
        listeners.push_back({Descriptor(socket), external, {}});
        std::free(names[i]); // allocated by systemd
    }
    std::free(names); // NOLINT(cppcoreguidelines-no-malloc)
    return listeners;
}

std::vector<Server::Listener> ownListeners()
{
    std::vector<Server::Listener> listeners;
    listeners.push_back(listenOn(ProtocolNames::internal, false, OWNER_ONLY));
    listeners.push_back(listenOn(ProtocolNames::external, true, EVERYBODY));
    return listeners;
}

/// Becomes readable when the process must stop.
int stopEvent = -1;

/// Cancels all work, and ends the process if something still blocks. Acknowledged writes are not lost.
void handleStopSignal(int)
{
    const int error = errno;
    stopDeadline = Clock::now() + limits::STOP_TIME;
    ::alarm(limits::STOP_LIMIT.count());
    const std::uint64_t one = 1;
    [[maybe_unused]] const ssize_t written = ::write(stopEvent, &one, sizeof one);
    errno = error;
}

/// Signals with a task other than to stop.
sigset_t requestSignals()
{
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : {SIGHUP, SIGUSR1})
        sigaddset(&signals, signal);
    return signals;
}

void handleSignals()
{
    stopEvent = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    struct sigaction action = {};
    action.sa_handler = handleStopSignal;
    action.sa_flags = SA_RESTART;
    for (const int signal : {SIGTERM, SIGINT})
        ::sigaction(signal, &action, nullptr);
    // Writing to a closed log fails instead of ending the process.
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN); // exceeding a file size limit counts as a full disk
    // Threads inherit the mask; only handleSignalsUntilStop() receives these signals.
    const sigset_t signals = requestSignals();
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
}

/// Sources that SIGHUP reads again; owned by the settings, null when absent.
struct Sources
{
    Gazetteer *gazetteer = nullptr;
    ContactBook *contacts = nullptr;

    void reread() const
    {
        logInfo("gazetteers and contacts are read again");
        if (gazetteer)
            gazetteer->reread();
        if (contacts)
            contacts->reread();
    }
};

/// Handles signals until the process must stop.
void handleSignalsUntilStop(Server &server, const Sources &sources)
{
    const sigset_t signals = requestSignals();
    const Descriptor requests(::signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK));
    for (;;) {
        std::array<pollfd, 2> events = {{{stopEvent, POLLIN, 0}, {requests.get(), POLLIN, 0}}};
        ::poll(events.data(), events.size(), SWEEP_INTERVAL.count());
        if (events[0].revents != 0)
            return;
        signalfd_siginfo request = {};
        if (::read(requests.get(), &request, sizeof request) == sizeof request) {
            if (request.ssi_signo == SIGHUP)
                sources.reread();
            else
                logInfo("state: %s", server.state().c_str());
        }
        server.dropIdleConnections();
        sd_notifyf(0, "STATUS=%s", server.state().c_str());
    }
}

/// Runs `work` for an argument; a failure names the option for another value.
template <typename Work>
void withOption(const char *option, const Work &work)
{
    try {
        work();
    } catch (const std::runtime_error &error) {
        throw std::runtime_error(std::string(error.what()) + "; name another one with " + option);
    }
}

void serve(Settings settings, const std::string &ppsRoot, const Sources &sources)
{
    // Lock first: sockets and the session key may belong to another service.
    const Descriptor lock = takeChannelFolder();
    if (!ppsRoot.empty())
        withOption("--pps-root", [&] { settings.sessionKey = publishSessionKey(ppsRoot); });
    std::vector<Server::Listener> listeners = inheritedListeners();
    if (listeners.empty())
        listeners = ownListeners();
    // Created before the server: clients that watch it may connect now, and the listeners queue them.
    settings.version = std::make_unique<DataVersion>(vela::system::channel::versionPath(ProtocolNames::internal));
    Server server(std::move(listeners), std::move(settings));
    sd_notify(0, "READY=1");
    handleSignalsUntilStop(server, sources);
    sd_notify(0, "STOPPING=1");
}

/// The sample data installed with this program; empty when it is not installed.
std::vector<std::string> sampleData()
{
    std::error_code unknown;
    const fs::path program = fs::read_symlink("/proc/self/exe", unknown);
    const fs::path folder = program.parent_path().parent_path() / PLACES_DATA_FOLDER;
    std::vector<std::string> files;
    for (const char *name : {"cities.geojson", "airports.geojson"}) {
        if (fs::exists(folder / name, unknown))
            files.push_back((folder / name).string());
    }
    return files;
}

/// Creates the folder of the database and checks the file before any other access.
void prepareDatabase(const std::string &path)
{
    if (const auto folder = fs::path(path).parent_path(); !folder.empty())
        fs::create_directories(folder);
    requirePlacesFile(path);
    makePrivate(path);
}

/// Prints the error in the arguments as one line with a hint at the help.
int refuseArguments(const CLI::ParseError &error)
{
    std::string problem = error.what();
    std::replace_if(
        problem.begin(), problem.end(), [](unsigned char c) { return std::iscntrl(c) != 0; }, ' ');
    std::cerr << "placesd: " << problem << "; see placesd --help\n";
    return WRONG_USE;
}

/// Prints a line without control characters: it contains names of places.
void writeLine(const std::string &line)
{
    QString text = QString::fromStdString(line);
    for (QChar &c : text) {
        if (c.category() == QChar::Other_Control || c.category() == QChar::Other_Format)
            c = QLatin1Char('?');
    }
    std::cout << text.toStdString() << "\n";
}

/// The problems of a database. A failure names the file, which is not the service's own.
std::vector<std::string> problemsOf(const std::string &file)
{
    try {
        return checkDatabase(file);
    } catch (const std::exception &error) {
        throw std::runtime_error(file + ": " + error.what());
    }
}

int check(const std::string &file)
{
    const std::vector<std::string> problems = problemsOf(file);
    for (const std::string &problem : problems)
        writeLine(problem);
    writeLine(
        file
        + (problems.empty() ? " is sound" : " is damaged; to rescue its places: placesd --repair " + file + " NEW"));
    return problems.empty() ? EXIT_SUCCESS : DAMAGED;
}

int repair(const std::string &file, const std::string &fresh)
{
    const Repair::Report report = Repair::run(file, fresh);
    for (const std::string &loss : report.losses)
        writeLine(loss);
    writeLine(fresh + " has " + std::to_string(report.places) + " places and " + std::to_string(report.terms)
              + " search terms of " + file + ", and " + std::to_string(report.lostPlaces) + " places are lost");
    return report.losses.empty() ? EXIT_SUCCESS : DAMAGED;
}

} // namespace

int run(int argc, char **argv, Settings settings)
{
    CLI::App app(
        "A places service: stores places in an SQLite file and answers requests on the channels \"places\" and "
        "\"places.external\".",
        "placesd");
    settings.database = defaultDatabase();
    std::string ppsRoot;
    std::vector<std::string> gazetteer = sampleData();
    std::string contacts;
    app.add_option("--database", settings.database, "Database file; created when it is missing")->capture_default_str();
    app.add_option("--pps-root", ppsRoot, "Folder for a session object; requests then need its key");
    const CLI::Option *namedGazetteer =
        app.add_option("--gazetteer", gazetteer, "GeoJSON files of searchable places; '' for none")
            ->capture_default_str();
    app.add_option("--contacts", contacts, "Folder of vCard files with addresses as places");
    std::string checked;
    std::vector<std::string> repaired;
    CLI::Option *check = app.add_option("--check", checked, "Check a database of places, print its problems, and exit");
    CLI::Option *repair =
        app.add_option("--repair", repaired, "Copy the readable part of a damaged database FILE to a new one, and exit")
            ->type_name("FILE NEW")
            ->expected(2)
            ->excludes(check);
    app.set_version_flag("--version", VELA_PLACES_VERSION_STRING);
    app.footer(
        "Signals: SIGTERM and SIGINT end it, SIGHUP reads gazetteers and contacts again, SIGUSR1 writes the state "
        "to the log.\nExit status: 0 ended by a signal, 1 failed, 2 wrong use; --check: 0 sound, 1 not a database "
        "of places, 3 damaged; "
        "--repair: 0 without losses, 1 nothing written, 3 with losses.");
    try {
        app.parse(argc, argv);
    } catch (const CLI::Success &help) {
        return app.exit(help);
    } catch (const CLI::ParseError &error) {
        return refuseArguments(error);
    }
    gazetteer.erase(std::remove(gazetteer.begin(), gazetteer.end(), std::string()), gazetteer.end());

    handleSignals();
    // A fixed threshold. By default it grows with the first freed long message, and the threads would then keep later
    // ones.
    ::mallopt(M_MMAP_THRESHOLD, limits::MAPPED_ALLOCATION);
    ::umask(0077);
    // A core dump would contain the session key and the places.
    ::prctl(PR_SET_DUMPABLE, 0);
    // SQLite's memory statistics use a global lock, and nothing reads them.
    sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 0);
    // Qt makes the first thread that uses it the main thread and keeps its data when the thread ends.
    QThread::currentThread();
    const std::string database = settings.database;
    try {
        if (check->count() > 0)
            return placesd::check(checked);
        if (repair->count() > 0)
            return placesd::repair(repaired[0], repaired[1]);
        withOption("--database", [&] { prepareDatabase(settings.database); });
        if (namedGazetteer->count() > 0)
            withOption("--gazetteer", [&] { std::for_each(gazetteer.begin(), gazetteer.end(), requireReadableFile); });
        if (!contacts.empty())
            withOption("--contacts", [&] { requireReadableFolder(contacts); });
        Sources sources;
        if (!gazetteer.empty()) {
            auto provider = std::make_unique<Gazetteer>(gazetteer, settings.database + "-gazetteer");
            sources.gazetteer = provider.get();
            settings.providers.insert(settings.providers.begin(), std::move(provider));
        }
        if (!contacts.empty()) {
            settings.contacts = std::make_unique<ContactBook>(contacts, sources.gazetteer);
            sources.contacts = settings.contacts.get();
        }
        serve(std::move(settings), ppsRoot, sources);
        return EXIT_SUCCESS;
    } catch (const SQLite::Exception &error) {
        std::cerr << "placesd: " << storageReason(database, error)
                  << (isDamage(error) ? "; " + remedyFor(database) : std::string()) << "\n";
        return EXIT_FAILURE;
    } catch (const std::exception &error) {
        std::cerr << "placesd: " << error.what() << "\n";
        return EXIT_FAILURE;
    }
}

} // namespace placesd
