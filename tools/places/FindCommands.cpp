// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "Commands.h"
#include "formats/JsonWriter.h"
#include "Options.h"
#include "PlaceLink.h"
#include "TerminalText.h"

#include <places/InternalPlaceManager.h>
#include <places/Place.h>
#include <places/PlaceHeader.h>
#include <places/PlaceManager.h>
#include <places/PlaceSearchManager.h>
#include <places/SearchHandle.h>
#include <places/Utilities.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <optional>

namespace tool
{

using namespace formats;
using namespace places;

namespace
{

constexpr int PROVIDER_WIDTH = 20;
constexpr int TYPES_WIDTH = 30;

struct FindOptions
{
    std::vector<std::string> terms;
    std::string position;
    Coordinates centre = {}; ///< Of the position.
    std::optional<std::string> radius = {};
    std::vector<std::string> tags;
    std::string sort = "relevance";
    Page page;
};

SortRule sortRuleOf(const FindOptions &options)
{
    if (options.centre.isValid())
        return SortRule::createDistanceSortRule(options.centre, SortOrder::Ascending);
    if (options.sort == "name")
        return SortRule::createSimpleSortRule(SortField::Name, SortOrder::Ascending);
    if (options.sort == "recent")
        return SortRule::createSimpleSortRule(SortField::LastUsedTime, SortOrder::Descending);
    if (options.sort == "new")
        return SortRule::createSimpleSortRule(SortField::CreationTime, SortOrder::Descending);
    return {};
}

using Headers = std::vector<std::unique_ptr<PlaceHeader>>;

/// What a find found.
template <typename Find>
Headers found(Find find, Error::Type &error, SearchHandle &handle)
{
    Headers headers;
    for (PlaceHeader *place : find(&error, &handle))
        headers.emplace_back(place);
    return headers;
}

/// Leaves out what is farther from `centre` than some metres, of headers by distance. True when there was any.
bool leaveOutFarther(Headers &headers, const Coordinates &centre, double metres)
{
    const auto isFarther = [&](const auto &place) {
        const Coordinates position = place->primaryCoordinates();
        return !position.isValid() || Utilities::calculateDistanceInMeter(centre, position) > metres;
    };
    const auto end = std::remove_if(headers.begin(), headers.end(), isFarther);
    const bool wereAny = end != headers.end();
    headers.erase(end, headers.end());
    return wereAny;
}

/// Runs a find and prints what it found, with distances from `centre` if that is valid, and only up to `radius` metres
/// if it is given.
template <typename Find>
ExitStatus printFound(const char *command, Form form, Find find, const Coordinates &centre = Coordinates(),
                      std::optional<double> radius = std::nullopt)
{
    Error::Type error = Error::Success;
    SearchHandle handle;
    Headers headers = found(find, error, handle);
    const ExitStatus status = report(error, QLatin1String(command));
    if (status != Done)
        return status;
    PlaceList places;
    const bool isWhole = radius && leaveOutFarther(headers, centre, *radius);
    for (const auto &place : headers)
        places.append(place.get());
    printPlaces(places, handle.hasMoreData() && !isWhole, form, centre);
    return Done;
}

ExitStatus findPlaces(const FindOptions &options, Form form)
{
    const auto find = [&](Error::Type *error, SearchHandle *handle) {
        const PlaceManager manager;
        const SortRule sort = sortRuleOf(options);
        const Page &page = options.page;
        return options.tags.empty()
                   ? manager.findPlaces(joined(options.terms), error, handle, sort, page.offset, page.limit)
                   : manager.findPlacesByTags(texts(options.tags), error, handle, sort, page.offset, page.limit);
    };
    const std::optional<double> radius = options.radius ? parseLength(*options.radius) : std::nullopt;
    return printFound("find", form, find, options.centre, radius);
}

/// The position of a stored place.
ExitStatus positionOf(qint64 id, Coordinates &position)
{
    Error::Type error = Error::Success;
    const QString title = QStringLiteral("place %1").arg(id);
    const std::unique_ptr<Place> place(PlaceManager().getPlace(id, &error));
    if (!place)
        return report(error, title);
    position = place->primaryCoordinates();
    if (position.isValid())
        return Done;
    complain(title, QStringLiteral("has no position; give it one with places update --at"));
    return Failed;
}

/// The places that a name may mean: those of exactly this name or, without any, all that a find finds.
Headers namesakes(const QString &name, Error::Type &error)
{
    SearchHandle handle;
    Headers all = found(
        [&name](Error::Type *outcome, SearchHandle *next) { return PlaceManager().findPlaces(name, outcome, next); },
        error, handle);
    const auto isOther = [&name](const auto &place) { return place->name().compare(name, Qt::CaseInsensitive) != 0; };
    const auto end = std::stable_partition(all.begin(), all.end(), [&](const auto &place) { return !isOther(place); });
    if (end != all.begin())
        all.erase(end, all.end());
    return all;
}

/// Names what a name may mean, and how to say which.
void complainOfNamesakes(const QString &name, const Headers &headers)
{
    constexpr std::size_t MOST = 10;
    QStringList candidates;
    for (std::size_t i = 0; i < std::min(headers.size(), MOST); ++i) {
        const QString where = headers[i]->primaryLocation();
        candidates.append(QStringLiteral("%1 %2").arg(headers[i]->id()).arg(headers[i]->name())
                          + (where.isEmpty() ? QString() : QStringLiteral(" (%1)").arg(where)));
    }
    const QString more = headers.size() > MOST ? QStringLiteral(" and others") : QString();
    complain(name,
             QStringLiteral("may be %1%2; name one by its number").arg(candidates.join(QStringLiteral(", ")), more));
}

/// Finds the position that the user means: one that is written as such, or that of a stored place.
ExitStatus findCentre(const QString &centre, Coordinates &position)
{
    bool isNumber = false;
    const qint64 id = centre.toLongLong(&isNumber);
    position = readAnyPosition(centre).position;
    if (position.isValid())
        return Done;
    if (isNumber)
        return positionOf(id, position);
    Error::Type error = Error::Success;
    const Headers headers = namesakes(centre, error);
    if (error != Error::Success)
        return report(error, centre);
    if (headers.size() == 1)
        return positionOf(headers.front()->id(), position);
    if (headers.empty())
        complain(centre, QStringLiteral("no stored place has this name; ") + unknownForm());
    else
        complainOfNamesakes(centre, headers);
    return Failed;
}

ExitStatus findNear(FindOptions &options, Form form)
{
    const ExitStatus status = findCentre(text(options.position), options.centre);
    return status == Done ? findPlaces(options, form) : status;
}

void addFind(CLI::App &app, Context &context)
{
    const auto options = std::make_shared<FindOptions>();
    CLI::App *find = app.add_subcommand("find", "Find places by the beginnings of words in their names");
    CLI::Option *term = find->add_option("TERM", options->terms, "Words to look for; none for every place");
    addListOption(*find, "--tag", options->tags, "Places with this tag instead; may be given several times")
        ->excludes(term);
    find->add_option("--near", options->position, "Nearest to this position first")->transform(IsPosition);
    find->add_option("--sort", options->sort, "Order of the results")
        ->check(CLI::IsMember({"relevance", "name", "recent", "new"}))
        ->capture_default_str();
    addPageOptions(*find, options->page);
    find->callback([&context, options] {
        options->centre = parsePosition(options->position);
        context.run = [&context, options] { return findPlaces(*options, context.form); };
    });

    CLI::App *near = app.add_subcommand("near", "List the places nearest to a position or to a stored place");
    near->add_option("CENTRE", options->position, "Position, or number or name of a stored place")
        ->required()
        ->transform(IsCentre);
    near->add_option("TERM", options->terms, "Words to look for in the names");
    near->add_option("--radius", options->radius, "Only places up to this distance, such as 500m or 2km")
        ->transform(IsLength);
    addPageOptions(*near, options->page);
    near->callback(
        [&context, options] { context.run = [&context, options] { return findNear(*options, context.form); }; });
}

ExitStatus listRecentTerms(const QString &prefix, Form form)
{
    Error::Type error = Error::Success;
    const QStringList terms = InternalPlaceManager().getRecentSearchTerms(&error, prefix);
    if (error == Error::Success)
        printTexts(terms, form);
    return report(error, QStringLiteral("recent"));
}

void addRecent(CLI::App &app, Context &context)
{
    struct Options
    {
        bool onlyMine = false;
        std::string prefix;
        Page page;
    };
    const auto options = std::make_shared<Options>();
    CLI::App *recent = app.add_subcommand("recent", "List places by their last use, latest first");
    CLI::Option *mine = recent->add_flag("--mine", options->onlyMine, "Only places that this application added");
    CLI::Option *terms =
        recent
            ->add_option("--terms", options->prefix, "List recent search terms instead: all, or those with this prefix")
            ->expected(0, 1)
            ->type_name("[PREFIX]")
            ->excludes(mine);
    addPageOptions(*recent, options->page);
    recent->callback([&context, options, terms] {
        if (terms->count() > 0) {
            context.run = [&context, options] { return listRecentTerms(text(options->prefix), context.form); };
            return;
        }
        context.run = [&context, options] {
            return printFound("recent", context.form, [&](Error::Type *error, SearchHandle *handle) {
                return PlaceManager().findRecentPlaces(error, handle, options->onlyMine, 0, options->page.offset,
                                                       options->page.limit);
            });
        };
    });
}

void addContacts(CLI::App &app, Context &context)
{
    const auto options = std::make_shared<FindOptions>();
    CLI::App *contacts = app.add_subcommand("contacts", "List the addresses of contacts, by name");
    contacts->add_option("TERM", options->terms, "Words to look for; none for every contact");
    addPageOptions(*contacts, options->page);
    contacts->callback([&context, options] {
        context.run = [&context, options] {
            return printFound("contacts", context.form, [&](Error::Type *error, SearchHandle *handle) {
                return InternalPlaceManager().findContacts(
                    error, handle, joined(options->terms),
                    SortRule::createSimpleSortRule(SortField::Name, SortOrder::Ascending), options->page.offset,
                    options->page.limit);
            });
        };
    });
}

void addTags(CLI::App &app, Context &context)
{
    CLI::App *tags = app.add_subcommand("tags", "List the tags in use");
    tags->callback([&context] {
        context.run = [&context] {
            Error::Type error = Error::Success;
            const QStringList found = PlaceManager().getTagsInUse(&error);
            if (error == Error::Success)
                printTexts(found, context.form);
            return report(error, QStringLiteral("tags"));
        };
    });
}

void writeProvider(JsonWriter &out, const Provider &provider)
{
    out.object([&] {
        out.member("name", provider.name());
        out.member("url", provider.url().toString(QUrl::FullyEncoded));
        out.member("canRequestAdditionalData", provider.canRequestAdditionalData());
        out.list("supportedDataTypes", provider.supportedDataTypes());
    });
}

ExitStatus listProviders(const QString &type, Form form)
{
    const QList<Provider> providers =
        type.isEmpty() ? PlaceSearchManager::getSupportedProviders() : PlaceSearchManager::findProviders(type);
    if (form != Form::Table) {
        JsonWriter out;
        out.array([&] {
            for (const Provider &provider : providers)
                writeProvider(out, provider);
        });
        printJson(out.result());
        return Done;
    }
    if (providers.isEmpty())
        std::fprintf(stderr, "places: nothing found\n");
    for (const Provider &provider : providers) {
        const QString types =
            provider.canRequestAdditionalData() ? provider.supportedDataTypes().join(QStringLiteral(", ")) : QString();
        printLine(cell(provider.name(), PROVIDER_WIDTH) + QLatin1Char(' ') + cell(types, TYPES_WIDTH) + QLatin1Char(' ')
                  + provider.url().toString());
    }
    return Done;
}

void addProviders(CLI::App &app, Context &context)
{
    const auto type = std::make_shared<std::string>();
    CLI::App *providers = app.add_subcommand("providers", "List who provides remote places and auxiliary records");
    providers->add_option("--type", *type, "Only those that can be asked for auxiliary records of this type");
    providers->callback(
        [&context, type] { context.run = [&context, type] { return listProviders(text(*type), context.form); }; });
}

} // namespace

void addFindCommands(CLI::App &app, Context &context)
{
    addFind(app, context);
    addRecent(app, context);
    addContacts(app, context);
    addTags(app, context);
    addProviders(app, context);
}

} // namespace tool
