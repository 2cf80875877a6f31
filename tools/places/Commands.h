// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Report.h"

#include <CLI/CLI.hpp>

#include <functional>

namespace tool
{

/// Shared between main() and the commands.
struct Context
{
    Form form = Form::Table;
    /// Suppresses messages about what was done.
    bool isQuiet = false;
    /// False when the chosen command does not need a places service.
    bool needsService = true;
    /// Set by a command that leaves threads waiting for the service. The process then ends without joining them.
    bool exitWithoutCleanup = false;
    /// The chosen command; empty until one is chosen.
    std::function<ExitStatus()> run;
};

// Each function adds commands to `app`. The command that the user names sets `context.run`.
void addChangeCommands(CLI::App &app, Context &context);
void addEditCommand(CLI::App &app, Context &context);
void addFindCommands(CLI::App &app, Context &context);
void addSearchCommand(CLI::App &app, Context &context);
void addChoiceCommands(CLI::App &app, Context &context);
void addExchangeCommands(CLI::App &app, Context &context);

/// Reports what was done: a line for people, or an object with a number or text as `member`.
void printDone(const Context &context, const char *member, qint64 count, const QString &line);
void printDone(const Context &context, const char *member, const QString &text, const QString &line);

} // namespace tool
