// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "Commands.h"
#include "Editor.h"
#include "formats/ExactJson.h"
#include "formats/Feature.h"
#include "formats/GeoJsonReader.h"
#include "formats/Input.h"
#include "formats/Vocabulary.h"
#include "Options.h"
#include "PlaceContent.h"
#include "Question.h"
#include "TerminalText.h"

#include <places/Place.h>
#include <places/PlaceManager.h>

#include <rapidjson/prettywriter.h>
#include <rapidjson/stringbuffer.h>

#include <memory>

namespace tool
{

using namespace formats;
using namespace places;

namespace
{

constexpr unsigned INDENT = 2;

/// Properties that duplicate tags and records, and those that only the service sets.
constexpr const char *REPEATED[] = {
    vocabulary::FAVORITE,   vocabulary::PHONE,       vocabulary::EMAIL,          vocabulary::URL,
    vocabulary::OWNER,      vocabulary::USAGE_COUNT, vocabulary::LAST_USED_TIME, vocabulary::CREATION_TIME,
    vocabulary::UPDATE_TIME};

/// The place as a feature over several lines for editing.
QByteArray textOf(const Place &place)
{
    ExactDocument feature;
    feature.read(toGeoJsonFeature(place).constData());
    rapidjson::Value &properties = feature["properties"];
    for (const char *name : REPEATED) {
        const auto member = properties.FindMember(name);
        if (member != properties.MemberEnd() && !isForeignProperty(QLatin1String(name), member->value))
            properties.EraseMember(member);
    }
    rapidjson::StringBuffer text;
    rapidjson::PrettyWriter<rapidjson::StringBuffer> writer(text);
    writer.SetIndent(' ', INDENT);
    feature.Accept(writer);
    return printableJson(QByteArray(text.GetString(), static_cast<int>(text.GetSize())) + '\n');
}

/// Reads the only feature of a file. Returns the error; empty on success.
QString readEdited(const QString &path, std::unique_ptr<Place> &place)
{
    QString problem;
    int count = 0;
    Input input(path);
    QString ofFile = readGeoJson(input, {}, [&](ReadPlace read) {
        place = std::move(read.place);
        problem = read.problem;
        return ++count < 2;
    });
    if (!ofFile.isEmpty())
        return ofFile;
    if (count != 1)
        return QStringLiteral("the file must contain exactly one feature");
    return place || !problem.isEmpty() ? problem : QStringLiteral("its geometry must be a Point");
}

/// Lets the user edit a place until the text is valid. Null when there is nothing to store; `status` is then the
/// result.
std::unique_ptr<Place> edited(const Place &place, ExitStatus &status, const Context &context)
{
    const QString name = nameOfPlace(place.id());
    const Editor editor;
    const QByteArray before = textOf(place);
    QString failure = editor.write(before);
    for (;;) {
        QByteArray after;
        if (failure.isEmpty())
            failure = editor.run();
        if (failure.isEmpty())
            failure = editor.read(after);
        if (!failure.isEmpty()) {
            status = fail(name, failure);
            return nullptr;
        }
        if (after == before) {
            printDone(context, "changed", 0, name + QStringLiteral(" is unchanged"));
            return nullptr;
        }
        std::unique_ptr<Place> read;
        const QString problem = readEdited(editor.path(), read);
        if (problem.isEmpty())
            return read;
        status = fail(name, problem);
        if (!ask(QStringLiteral("places: edit it again?"), true))
            return nullptr;
        status = Done;
    }
}

/// Stores the edited place. Asks first when another program has changed the stored place since.
ExitStatus store(const Place &before, const Place &after, const Context &context)
{
    const QString name = nameOfPlace(before.id());
    Error::Type error = Error::Success;
    const std::unique_ptr<Place> stored(PlaceManager().getPlace(before.id(), &error));
    if (!stored)
        return report(error, name);
    if (!(PlaceContent::of(*stored) == PlaceContent::of(before))) {
        complain(name, QStringLiteral("another program has changed it during the edit"));
        if (!ask(QStringLiteral("places: overwrite the other change?"), false))
            return Failed;
    }
    PlaceContent::of(after).applyTo(*stored);
    const ExitStatus status = report(PlaceManager().updatePlace(stored.get()), name);
    if (status == Done)
        printDone(context, "changed", 1, QStringLiteral("changed 1 place"));
    return status;
}

ExitStatus edit(qint64 id, const Context &context)
{
    Error::Type error = Error::Success;
    const std::unique_ptr<Place> place(PlaceManager().getPlace(id, &error));
    if (!place)
        return report(error, nameOfPlace(id));
    ExitStatus status = Done;
    const std::unique_ptr<Place> changed = edited(*place, status, context);
    return changed ? store(*place, *changed, context) : status;
}

} // namespace

void addEditCommand(CLI::App &app, Context &context)
{
    const auto id = std::make_shared<qint64>(-1);
    CLI::App *command = app.add_subcommand("edit", "Change a place as a GeoJSON feature in $VISUAL or $EDITOR");
    command->add_option("ID", *id, "Number of the place")->required()->transform(IsId);
    command->callback([&context, id] { context.run = [&context, id] { return edit(*id, context); }; });
}

} // namespace tool
