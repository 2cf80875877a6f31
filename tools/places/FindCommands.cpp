// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "Commands.h"
#include "formats/JsonWriter.h"
#include "Options.h"
#include "TerminalText.h"

#include <places/InternalPlaceManager.h>
#include <places/PlaceHeader.h>
#include <places/PlaceManager.h>
#include <places/PlaceSearchManager.h>
#include <places/SearchHandle.h>

#include <cstdio>
#include <memory>

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
    std::vector<std::string> tags;
    std::string sort = "relevance";
    Page page;
};

SortRule sortRuleOf(const FindOptions &options)
{
    if (!options.position.empty())
        return SortRule::createDistanceSortRule(parsePosition(options.position), SortOrder::Ascending);
    if (options.sort == "name")
        return SortRule::createSimpleSortRule(SortField::Name, SortOrder::Ascending);
    if (options.sort == "recent")
        return SortRule::createSimpleSortRule(SortField::LastUsedTime, SortOrder::Descending);
    if (options.sort == "new")
        return SortRule::createSimpleSortRule(SortField::CreationTime, SortOrder::Descending);
    return {};
}

/// Runs a find and prints the places, with distances from `centre` if it is valid.
template <typename Find>
ExitStatus printFound(const char *command, Form form, Find find, const Coordinates &centre = Coordinates())
{
    Error::Type error = Error::Success;
    SearchHandle handle;
    std::vector<std::unique_ptr<PlaceHeader>> found;
    for (PlaceHeader *place : find(&error, &handle))
        found.emplace_back(place);
    const ExitStatus status = report(error, QLatin1String(command));
    if (status != Done)
        return status;
    PlaceList places;
    for (const auto &place : found)
        places.append(place.get());
    printPlaces(places, handle.hasMoreData(), form, centre);
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
    return printFound("find", form, find, parsePosition(options.position));
}

void addFind(CLI::App &app, Context &context)
{
    const auto options = std::make_shared<FindOptions>();
    const auto run = [&context, options] {
        context.run = [&context, options] { return findPlaces(*options, context.form); };
    };

    CLI::App *find = app.add_subcommand("find", "Find places by the beginnings of words in their names");
    CLI::Option *term = find->add_option("TERM", options->terms, "Words to look for; none for every place");
    addListOption(*find, "--tag", options->tags, "Places with this tag instead; may be given several times")
        ->excludes(term);
    find->add_option("--near", options->position, "Nearest to this position first")->transform(IsPosition);
    find->add_option("--sort", options->sort, "Order of the results")
        ->check(CLI::IsMember({"relevance", "name", "recent", "new"}))
        ->capture_default_str();
    addPageOptions(*find, options->page);
    find->callback(run);

    CLI::App *near = app.add_subcommand("near", "List the places nearest to a position");
    near->add_option("POSITION", options->position, "Position in degrees")->required()->transform(IsPosition);
    near->add_option("TERM", options->terms, "Words to look for in the names");
    addPageOptions(*near, options->page);
    near->callback(run);
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
