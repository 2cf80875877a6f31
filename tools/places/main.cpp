// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "Commands.h"
#include "Options.h"
#include "ServiceStarter.h"
#include "Signals.h"

#include <places/Version.h>

#include <QtCore/QCoreApplication>

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <iostream>

#include <langinfo.h>

namespace
{

using tool::ExitStatus;

/// Output is UTF-8. The plain C locale is ASCII only and would corrupt other characters in the arguments.
void useUtf8Locale()
{
    if (std::strcmp(::nl_langinfo(CODESET), "ANSI_X3.4-1968") == 0)
        std::setlocale(LC_CTYPE, "C.UTF-8");
}

ExitStatus withService(const tool::Context &context, bool mayStart)
{
    tool::ServiceStarter service;
    if (context.needsService && !tool::ServiceStarter::isServiceRunning()) {
        if (!mayStart)
            return tool::report(vela::platform::places::Error::ServiceUnavailable, QStringLiteral("--no-start"), {});
        if (!service.start())
            return tool::NoService;
    }
    return context.run();
}

/// Prints help or the error in the arguments.
ExitStatus explain(const CLI::App &app, const CLI::ParseError &error)
{
    if (error.get_exit_code() == 0)
        return static_cast<ExitStatus>(app.exit(error, std::cout));
    const std::vector<CLI::App *> commands = app.get_subcommands();
    if (!commands.empty())
        return tool::misuse(commands.front()->get_name().c_str(), tool::text(error.what()));
    const std::vector<std::string> unknown = app.remaining();
    if (unknown.empty())
        tool::complain(QStringLiteral("command"), QStringLiteral("none is given; see places --help"));
    else
        tool::complain(tool::text(unknown.front()),
                       QStringLiteral("there is no such command or option; see places --help"));
    return tool::WrongUse;
}

ExitStatus run(int argc, char **argv, tool::Context &context)
{
    CLI::App app("Stores, finds and shows places.", "places");
    app.require_subcommand(1);
    app.set_version_flag("--version", "places " VELA_PLACES_VERSION_STRING);
    app.footer("Exit status: 0 done, 1 failed, 2 wrong use, 69 no places service, 130 interrupted.");
    bool json = false;
    bool noStart = false;
    app.add_flag("--json", json, "Write GeoJSON or JSON instead of tables");
    app.add_flag("--quiet,-q", context.isQuiet, "Suppress messages about what was done");
    app.add_flag("--no-start", noStart, "Do not start a places service when none is running");
    app.fallthrough();
    tool::addChangeCommands(app, context);
    tool::addEditCommand(app, context);
    tool::addChoiceCommands(app, context);
    tool::addFindCommands(app, context);
    tool::addSearchCommand(app, context);
    tool::addExchangeCommands(app, context);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError &error) {
        return explain(app, error);
    }
    context.form = json ? tool::Form::Json : tool::Form::Table;
    return withService(context, !noStart);
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    useUtf8Locale();
    tool::Context context;
    ExitStatus status = tool::Failed;
    try {
        status = run(argc, argv, context);
    } catch (const std::exception &error) {
        tool::complain(QStringLiteral("failed"), QString::fromLocal8Bit(error.what()));
    }
    const ExitStatus written = tool::finishOutput();
    if (status == tool::Done)
        status = written;
    if (status > tool::Interrupted)
        tool::endBySignal(status - tool::Interrupted);
    if (context.exitWithoutCleanup)
        std::quick_exit(status);
    return status;
}
