// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "Commands.h"
#include "ServiceStarter.h"

#include <clocale>

int main(int argc, char **argv)
{
    std::setlocale(LC_ALL, "");
    CLI::App app("Keeps places: adds them, finds them, shows them.", "places");
    app.require_subcommand(1);
    app.footer("Exit status: 0 done, 1 failed, 2 wrong use, 69 no places service.");
    tool::Context context;
    bool json = false;
    bool noStart = false;
    app.add_flag("--json", json, "Write GeoJSON or JSON instead of tables");
    app.add_flag("--no-start", noStart, "Do not start a places service when none is running");
    app.fallthrough();
    tool::addCommands(app, context);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError &error) {
        return app.exit(error) == 0 ? tool::Done : tool::WrongUse;
    }
    context.form = json ? tool::Form::Json : tool::Form::Table;

    tool::ServiceStarter service;
    if (context.needsService && !tool::ServiceStarter::isServiceRunning()) {
        if (noStart)
            return tool::report(vela::platform::places::Error::ServiceUnavailable, QStringLiteral("--no-start"));
        if (!service.start())
            return tool::NoService;
    }
    return context.run();
}
