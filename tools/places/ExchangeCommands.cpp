// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "Backup.h"
#include "ChoiceOptions.h"
#include "ChosenPlaces.h"
#include "Commands.h"
#include "Export.h"
#include "formats/Format.h"
#include "Import.h"
#include "Options.h"

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
    const QStringList formats = formatNames(onlyWritable);
    for (const QString &name : formats)
        names.push_back(name.toStdString());
    command.add_option("--format", format, "Format; by default from the file's extension or content")
        ->check(CLI::IsMember(names));
}

/// Splits each "HEADING=PROPERTY".
QMap<QString, QString> columnsOf(const std::vector<std::string> &assignments)
{
    QMap<QString, QString> columns;
    const QStringList list = texts(assignments);
    for (const QString &assignment : list) {
        const int sign = assignment.lastIndexOf(QLatin1Char('='));
        columns.insert(assignment.left(sign), assignment.mid(sign + 1));
    }
    return columns;
}

/// Adds the options for members that are already stored. The last option given takes effect.
void addStoredOptions(CLI::App &command, StoredMembers &stored)
{
    const auto add = [&](const char *name, const char *description, StoredMembers value) {
        return command.add_flag_callback(
            name, [&stored, value] { stored = value; }, description);
    };
    CLI::Option *skip = add("--skip-existing", "Skip places that are already stored (default)", StoredMembers::Skip);
    CLI::Option *update =
        add("--update", "Update places that are already stored with the values of the file", StoredMembers::Update);
    CLI::Option *duplicate =
        add("--duplicate", "Store every place again, even if it is already stored", StoredMembers::Duplicate);
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
    command->add_option("--tag", arguments->tag, "Tag for every added place")->transform(IsName);
    command->add_flag("--areas", arguments->areas, "Import lines and areas as places at a point inside");
    addListOption(*command, "--columns", arguments->columns, "Property for the column with this heading")
        ->delimiter(',')
        ->transform(IsAssignment);
    command->add_flag("--dry-run", arguments->isDryRun, "Write nothing; print what would be done");
    command->callback([&context, arguments] {
        context.run = [&context, arguments] {
            ImportOptions options;
            options.format = text(arguments->format);
            options.read.areas = arguments->areas;
            options.read.columns = columnsOf(arguments->columns);
            options.store = {arguments->stored, arguments->isDryRun, text(arguments->tag)};
            options.form = context.form;
            options.isQuiet = context.isQuiet;
            return importFiles(texts(arguments->files), options);
        };
    });
}

ExitStatus runExport(ExportOptions options, const ChoiceOptions &given, bool isDryRun, const Context &context)
{
    if (const ExitStatus status = given.read("export", options.choice, true); status != Done)
        return status;
    if (isDryRun)
        return listChosen(options.choice, context.form);
    qint64 count = 0;
    const ExitStatus status = exportPlaces(options, count);
    if (status == Done && options.path != QLatin1String("-"))
        printDone(context, "exported", count, QStringLiteral("exported %1 to %2").arg(countOf(count), options.path));
    return status;
}

void addExport(CLI::App &app, Context &context)
{
    struct Arguments
    {
        std::string file = "-";
        std::string format;
        ChoiceOptions choice;
        bool isDryRun = false;
    };
    const auto arguments = std::make_shared<Arguments>();
    CLI::App *command = app.add_subcommand("export", "Write all stored places, or some of them, to a file");
    command->add_option("FILE", arguments->file, "File; - for standard output")->capture_default_str();
    command->add_option("PLACE", arguments->choice.words, "Numbers of places, or words of their names");
    arguments->choice.addTo(*command);
    command->add_flag("--dry-run", arguments->isDryRun, "List the places and write nothing");
    addFormatOption(*command, arguments->format, true);
    command->callback([&context, arguments] {
        context.run = [&context, arguments] {
            const ExportOptions options{text(arguments->file), text(arguments->format), {}};
            return runExport(options, arguments->choice, arguments->isDryRun, context);
        };
    });
}

/// Adds a command that makes the service copy its store.
/// @param member name of the file in JSON.
void addCopyCommand(CLI::App &app, Context &context, const char *name, const char *description,
                    ExitStatus (*copy)(const QString &), const char *member, const QString &done)
{
    const auto file = std::make_shared<std::string>();
    CLI::App *command = app.add_subcommand(name, description);
    command->add_option("FILE", *file, "Backup file; - for standard input or output")->required();
    command->callback([&context, file, copy, member, done] {
        context.run = [&context, file, copy, member, done] {
            const ExitStatus status = copy(text(*file));
            if (status == Done && *file != "-")
                printDone(context, member, text(*file), done.arg(text(*file)));
            return status;
        };
    });
}

} // namespace

void addExchangeCommands(CLI::App &app, Context &context)
{
    addImport(app, context);
    addExport(app, context);
    addCopyCommand(app, context, "backup", "Write the whole store to a backup file", backUp, "written",
                   QStringLiteral("wrote all that is stored to %1"));
    addCopyCommand(app, context, "restore", "Replace the whole store by a backup file", restore, "restored",
                   QStringLiteral("restored all that %1 holds"));
}

} // namespace tool
