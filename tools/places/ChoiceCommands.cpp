// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "ChoiceOptions.h"
#include "ChosenPlaces.h"
#include "Commands.h"
#include "MassChange.h"
#include "Options.h"
#include "Question.h"

#include <places/Place.h>
#include <places/PlaceManager.h>

#include <algorithm>
#include <memory>

#include <unistd.h>

namespace tool
{

using namespace places;

namespace
{

/// A command that changes several places in the same way.
struct ChangeKind
{
    const char *name;
    const char *description;
    const char *done;   ///< Message after the change; %1 is the number of places.
    const char *member; ///< Name of the count in JSON.
    bool isRemoval = false;
};

constexpr ChangeKind REMOVE{"remove", "Remove places", "removed %1", "removed", true};
constexpr ChangeKind USE{"use", "Record that places are used now", "counted a use of %1", "used"};
constexpr ChangeKind FAV{"fav", "Mark places as favourites", "marked %1 as favourite", "marked"};
constexpr ChangeKind UNFAV{"unfav", "Remove the favourite mark of places", "unmarked %1 as favourite", "unmarked"};
constexpr ChangeKind TAG{"tag", "Add tags to places", "tagged %1", "tagged"};
constexpr ChangeKind UNTAG{"untag", "Remove tags from places", "untagged %1", "untagged"};

struct ChangeOptions
{
    ChoiceOptions choice;
    std::vector<std::string> tags;
    std::string first; ///< First of the words, in commands about tags.
    bool isDryRun = false;
    bool isConfirmed = false;
};

/// Asks before several places are removed. WrongUse when standard input is not a terminal.
ExitStatus confirm(std::size_t count)
{
    const QString what = QStringLiteral("remove %1").arg(countOf(static_cast<qint64>(count)));
    if (::isatty(STDIN_FILENO) == 0) {
        complain(what, QStringLiteral("more than one place; confirm with --yes, or list them with --dry-run"));
        return WrongUse;
    }
    return ask(QStringLiteral("places: ") + what + QLatin1Char('?'), false) ? Done : Failed;
}

/// A place without the value to change is an error if the user named it, and is skipped if it was found by conditions.
ExitStatus change(const std::vector<qint64> &ids, const ChangeKind &kind, const ChangePlace &work, bool areNamed,
                  const Context &context)
{
    const std::vector<Change> changes = changeAll(ids, work);
    ExitStatus status = Done;
    qint64 done = 0;
    for (std::size_t i = 0; i < ids.size(); ++i) {
        const Change &each = changes[i];
        const QString name = nameOfPlace(ids[i]);
        done += each.isDone ? 1 : 0;
        if (each.error != Error::Success)
            status = report(each.error, name, each.reason);
        else if (areNamed && !each.missing.isEmpty())
            status = fail(name, each.missing);
    }
    if (done == 0)
        return status == Done ? fail(QLatin1String(kind.name), QStringLiteral("there is nothing to change")) : status;
    printDone(context, kind.member, done, QString::fromLatin1(kind.done).arg(countOf(done)));
    return status;
}

ExitStatus runChange(const ChangeOptions &options, const ChangeKind &kind, const ChangePlace &work,
                     const Context &context)
{
    PlaceChoice choice;
    if (const ExitStatus status = options.choice.read(kind.name, choice, true); status != Done)
        return status;
    if (choice.ids.empty() && !choice.hasConditions())
        return misuse(kind.name,
                      QStringLiteral("no places are given; give their numbers, or conditions such as --tag"));
    if (options.isDryRun)
        return listChosen(choice, context.form);
    std::vector<qint64> ids;
    if (const ExitStatus status = collectChosen(choice, ids); status != Done)
        return status;
    if (kind.isRemoval && ids.size() > 1 && !options.isConfirmed) {
        if (const ExitStatus status = confirm(ids.size()); status != Done)
            return status;
    }
    return change(ids, kind, work, !choice.ids.empty(), context);
}

std::shared_ptr<ChangeOptions> addOptions(CLI::App &command)
{
    auto options = std::make_shared<ChangeOptions>();
    options->choice.addTo(command);
    command.add_flag("--dry-run", options->isDryRun, "List the places and change nothing");
    return options;
}

void addChange(CLI::App &app, Context &context, const ChangeKind &kind, const ChangePlace &work)
{
    CLI::App *command = app.add_subcommand(kind.name, kind.description);
    const auto options = addOptions(*command);
    command->add_option("PLACE", options->choice.words, "Numbers of places, or words of their names");
    if (kind.isRemoval)
        command->add_flag("--yes,-y", options->isConfirmed, "Remove several places without asking");
    command->callback([&context, &kind, options, work] {
        context.run = [&context, &kind, options, work] { return runChange(*options, kind, work, context); };
    });
}

/// Without --as, the leading numbers are places and the other arguments are tags.
QString splitTags(ChangeOptions &options)
{
    std::vector<std::string> &words = options.choice.words;
    if (!options.first.empty())
        words.insert(words.begin(), options.first);
    if (!options.tags.empty())
        return {};
    const auto firstTag =
        std::find_if(words.begin(), words.end(), [](std::string word) { return !IsId(word).empty(); });
    options.tags.assign(firstTag, words.end());
    words.erase(firstTag, words.end());
    return options.tags.empty() ? QStringLiteral("which tag? Give a tag that is a number with --as") : QString();
}

using ChangeTags = Change (*)(qint64 id, const QStringList &tags);

void addTagChange(CLI::App &app, Context &context, const ChangeKind &kind, ChangeTags work)
{
    CLI::App *command = app.add_subcommand(kind.name, kind.description);
    const auto options = addOptions(*command);
    // CLI11 gives arguments after "--" to the first option without a value.
    command->add_option("PLACE", options->first, "Numbers of places, then tags; only places with --as");
    command->add_option("TAG", options->choice.words, "More places or tags");
    addListOption(*command, "--as", options->tags, "Tag; may be given several times");
    command->callback([&context, &kind, options, work] {
        context.run = [&context, &kind, options, work] {
            if (const QString problem = splitTags(*options); !problem.isEmpty())
                return misuse(kind.name, problem);
            const QStringList tags = texts(options->tags);
            return runChange(
                *options, kind, [work, tags](qint64 id) { return work(id, tags); }, context);
        };
    });
}

/// Fetches a place and calls `work` with it.
template <typename Work>
Change withPlace(qint64 id, Work work)
{
    Error::Type error = Error::Success;
    const std::unique_ptr<Place> place(PlaceManager().getPlace(id, &error));
    return place ? work(*place) : Change::of(error);
}

Change fav(qint64 id)
{
    return withPlace(id, [](Place &place) { return Change::of(PlaceManager().fav(&place)); });
}

Change unfav(qint64 id)
{
    return withPlace(id, [](Place &place) {
        if (!place.isFavorite())
            return Change{Error::Success, {}, QStringLiteral("is not a favourite; places fav makes it one"), false};
        return Change::of(PlaceManager().unfav(&place));
    });
}

Change addTags(qint64 id, const QStringList &tags)
{
    Change change;
    for (const QString &tag : tags) {
        change = Change::of(PlaceManager().addTag(id, tag));
        if (change.error != Error::Success)
            break;
    }
    return change;
}

Change removeTags(qint64 id, const QStringList &tags)
{
    return withPlace(id, [&](const Place &place) {
        QStringList missing;
        Change change;
        for (const QString &tag : tags) {
            if (!place.hasTag(tag)) {
                missing.append(tag);
                continue;
            }
            change = Change::of(PlaceManager().removeTag(id, tag));
            if (change.error != Error::Success)
                return change;
        }
        if (!missing.isEmpty())
            change.missing = QStringLiteral("has no tag ") + missing.join(QStringLiteral(", "));
        return change;
    });
}

} // namespace

void addChoiceCommands(CLI::App &app, Context &context)
{
    addChange(app, context, REMOVE, [](qint64 id) { return Change::of(PlaceManager().removePlace(id)); });
    addChange(app, context, USE, [](qint64 id) { return Change::of(PlaceManager().usePlace(id)); });
    addChange(app, context, FAV, fav);
    addChange(app, context, UNFAV, unfav);
    addTagChange(app, context, TAG, addTags);
    addTagChange(app, context, UNTAG, removeTags);
}

} // namespace tool
