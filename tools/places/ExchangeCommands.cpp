// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "Commands.h"
#include "Export.h"
#include "formats/Format.h"
#include "Import.h"
#include "Options.h"

#include <places/InternalPlaceManager.h>

#include <QtCore/QFileInfo>
#include <QtCore/QMap>

#include <memory>

namespace tool
{

using namespace formats;
using namespace places;

namespace
{

/// Adds the option `--format`.
void addFormatOption(CLI::App &command, std::string &format, bool onlyWritable)
{
    std::vector<std::string> names;
    for (const QString &name : formatNames(onlyWritable))
        names.push_back(name.toStdString());
    command.add_option("--format", format, "Format; by default from the file's extension or content")
        ->check(CLI::IsMember(names));
}

/// Splits each "HEADING=PROPERTY".
QMap<QString, QString> columnsOf(const std::vector<std::string> &assignments)
{
    QMap<QString, QString> columns;
    for (const QString &assignment : texts(assignments)) {
        const int sign = assignment.lastIndexOf(QLatin1Char('='));
        columns.insert(assignment.left(sign), assignment.mid(sign + 1));
    }
    return columns;
}

/// What is done about members that are stored already: the last of these options that is given counts.
void addStoredOptions(CLI::App &command, StoredMembers &stored)
{
    const auto add = [&](const char *name, const char *description, StoredMembers value) {
        return command.add_flag_callback(
            name, [&stored, value] { stored = value; }, description);
    };
    CLI::Option *skip = add("--skip-existing", "Leave what is stored already as it is (default)", StoredMembers::Skip);
    CLI::Option *update =
        add("--update", "Change what is stored already into what the file says", StoredMembers::Update);
    CLI::Option *duplicate =
        add("--duplicate", "Store everything, also what is stored already", StoredMembers::Duplicate);
    update->excludes(skip, duplicate);
    duplicate->excludes(skip);
}

void addImport(CLI::App &app, Context &context)
{
    struct Arguments
    {
        std::vector<std::string> files;
        std::string format;
        std::string tag;
        std::vector<std::string> columns;
        bool areas = false;
        bool isDryRun = false;
        StoredMembers stored = StoredMembers::Skip;
    };
    const auto arguments = std::make_shared<Arguments>();
    CLI::App *command = app.add_subcommand("import", "Add the places of files");
    command->add_option("FILE", arguments->files, "Files; - for standard input")->required();
    addFormatOption(*command, arguments->format, false);
    addStoredOptions(*command, arguments->stored);
    command->add_option("--tag", arguments->tag, "Tag for every place that is added")->transform(IsName);
    command->add_flag("--areas", arguments->areas, "Import lines and areas as places at a point inside");
    addListOption(*command, "--columns", arguments->columns, "Property that a column of a table is, by its heading")
        ->delimiter(',')
        ->transform(IsAssignment);
    command->add_flag("--dry-run", arguments->isDryRun, "Write nothing; say what would be done");
    command->callback([&context, arguments] {
        context.run = [&context, arguments] {
            ImportOptions options;
            options.format = text(arguments->format);
            options.read.areas = arguments->areas;
            options.read.columns = columnsOf(arguments->columns);
            options.store = {arguments->stored, arguments->isDryRun, text(arguments->tag)};
            options.form = context.form;
            return importFiles(texts(arguments->files), options);
        };
    });
}

void addExport(CLI::App &app, Context &context)
{
    const auto format = std::make_shared<std::string>();
    const auto file = std::make_shared<std::string>("-");
    CLI::App *command = app.add_subcommand("export", "Write all stored places as GeoJSON, JSON documents or vCards");
    command->add_option("FILE", *file, "File; - for standard output")->capture_default_str();
    addFormatOption(*command, *format, true);
    command->callback([&context, file, format] {
        context.run = [file, format] { return exportPlaces(text(*file), text(*format)); };
    });
}

using CopyStore = Error::Type (InternalPlaceManager::*)(const QString &) const;

/// Adds a command that calls `copy` with a file. The path is made absolute: the service may run in another folder.
void addCopyCommand(CLI::App &app, Context &context, const char *name, const char *description, CopyStore copy)
{
    const auto file = std::make_shared<std::string>();
    CLI::App *command = app.add_subcommand(name, description);
    command->add_option("FILE", *file, "File of a backup")->required();
    command->callback([&context, file, copy, name] {
        context.run = [file, copy, name] {
            const QString path = QFileInfo(text(*file)).absoluteFilePath();
            const Error::Type error = (InternalPlaceManager().*copy)(path);
            const QString reason = Error::reason(error);
            return report(error, reason.contains(path) ? QString::fromLatin1(name) : path, reason);
        };
    });
}

} // namespace

void addExchangeCommands(CLI::App &app, Context &context)
{
    addImport(app, context);
    addExport(app, context);
    addCopyCommand(app, context, "backup", "Write all stored data to a backup file", &InternalPlaceManager::backup);
    addCopyCommand(app, context, "restore", "Replace all stored data by a backup file", &InternalPlaceManager::restore);
}

} // namespace tool
