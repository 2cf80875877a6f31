// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "Commands.h"
#include "Export.h"
#include "formats/Format.h"
#include "Import.h"
#include "Options.h"

#include <places/InternalPlaceManager.h>

#include <QtCore/QFileInfo>

#include <memory>

namespace tool
{

using namespace formats;
using namespace places;

namespace
{

/// Adds the option that names a format.
void addFormatOption(CLI::App &command, std::string &format, bool onlyWritable)
{
    std::vector<std::string> names;
    for (const QString &name : formatNames(onlyWritable))
        names.push_back(name.toStdString());
    command.add_option("--format", format, "Format; without it the file's extension or content tells")
        ->check(CLI::IsMember(names));
}

void addImport(CLI::App &app, Context &context)
{
    const auto format = std::make_shared<std::string>();
    const auto files = std::make_shared<std::vector<std::string>>();
    CLI::App *command = app.add_subcommand("import", "Add the places of GeoJSON, JSON, GPX, KML, CSV and vCard files");
    command->add_option("FILE", *files, "Files; - for standard input")->required();
    addFormatOption(*command, *format, false);
    command->callback([&context, files, format] {
        context.run = [&context, files, format] { return importFiles(texts(*files), text(*format), context.form); };
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

/// Adds a command that has the service copy its store. The service may run in another folder, so it gets an absolute
/// path.
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
    addCopyCommand(app, context, "backup", "Write all that is stored to a backup file", &InternalPlaceManager::backup);
    addCopyCommand(app, context, "restore", "Replace all that is stored by what a backup file holds",
                   &InternalPlaceManager::restore);
}

} // namespace tool
