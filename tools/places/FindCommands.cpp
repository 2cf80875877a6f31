// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "ChoiceOptions.h"
#include "ChosenPlaces.h"
#include "Commands.h"
#include "formats/JsonWriter.h"
#include "Options.h"
#include "TerminalText.h"

#include <places/InternalPlaceManager.h>
#include <places/PlaceHeader.h>
#include <places/PlaceManager.h>
#include <places/PlaceSearchManager.h>
#include <places/SearchHandle.h>

#include <QtCore/QList>
#include <QtCore/QSharedPointer>

#include <algorithm>
#include <memory>
#include <optional>
#include <vector>

namespace tool
{

using namespace formats;
using namespace places;

namespace
{

constexpr int PROVIDER_WIDTH = 20;
constexpr int TYPES_WIDTH = 30;

/// Options of every command that lists places.
struct ListOptions
{
    void addTo(CLI::App &command)
    {
        addPageOptions(command, page);
        addRowOption(command, row);
    }
    [[nodiscard]] ListForm form(const Context &context, const Coordinates &centre = {}) const
    {
        return {context.form, rowOf(row), centre};
    }

    Page page;
    std::string row;
};

struct FindOptions
{
    ChoiceOptions choice;
    std::string sort;
    ListOptions list;
};

/// Nothing where the conditions say what comes first.
std::optional<SortRule> sortRuleOf(const FindOptions &options, const PlaceChoice &choice)
{
    if (options.sort == "name")
        return SortRule::createSimpleSortRule(SortField::Name, SortOrder::Ascending);
    if (options.sort == "recent")
        return SortRule::createSimpleSortRule(SortField::LastUsedTime, SortOrder::Descending);
    if (options.sort == "new")
        return SortRule::createSimpleSortRule(SortField::CreationTime, SortOrder::Descending);
    if (choice.centre.isValid())
        return choice.sort();
    return options.sort == "relevance" || !choice.needsFilter() ? std::optional(SortRule()) : std::nullopt;
}

using Found = QList<QSharedPointer<AbstractPlace>>;

Found owned(const QList<PlaceHeader *> &headers)
{
    Found found;
    for (PlaceHeader *header : headers)
        found.append(QSharedPointer<AbstractPlace>(header));
    return found;
}

/// Runs a find and prints what it found.
template <typename Find>
ExitStatus printFound(const char *command, const ListForm &form, Find find)
{
    Error::Type error = Error::Success;
    SearchHandle handle;
    const Found found = find(&error, &handle);
    const ExitStatus status = report(error, QLatin1String(command));
    if (status != Done)
        return status;
    PlaceList places;
    for (const auto &place : found)
        places.append(place.data());
    printPlaces(places, handle.hasMoreData(), form);
    return Done;
}

/// Finds places that the service cannot select by itself.
ExitStatus findFiltered(const PlaceChoice &choice, const std::optional<SortRule> &sort, const Page &page,
                        const ListForm &form)
{
    std::vector<qint64> ids;
    bool hasMore = false;
    qint64 count = 0;
    const Error::Type error = choice.forEach(sort, [&](const AbstractPlace &place) {
        if (count++ < page.offset)
            return true;
        hasMore = ids.size() >= static_cast<std::size_t>(page.limit);
        if (!hasMore)
            ids.push_back(place.id());
        return !hasMore;
    });
    const ExitStatus status = report(error, QStringLiteral("find"));
    return status == Done ? listPlaces(ids, hasMore, form) : status;
}

/// By words alone, contacts are found too.
ExitStatus findPlaces(const char *command, const FindOptions &options, const Context &context)
{
    PlaceChoice choice;
    if (const ExitStatus status = options.choice.read(command, choice, false); status != Done)
        return status;
    const std::optional<SortRule> sort = sortRuleOf(options, choice);
    const Page &page = options.list.page;
    const ListForm form = options.list.form(context, choice.centre);
    if (choice.needsFilter())
        return findFiltered(choice, sort, page, form);
    const auto find = [&](Error::Type *error, SearchHandle *handle) {
        return choice.isOfWordsOnly()
                   ? owned(PlaceManager().findPlaces(choice.words, error, handle, *sort, page.offset, page.limit))
                   : InternalPlaceManager().findMixedPlaces(choice.rule(), error, handle, *sort, page.offset,
                                                            page.limit);
    };
    return printFound(command, form, find);
}

void addFind(CLI::App &app, Context &context)
{
    const auto options = std::make_shared<FindOptions>();
    CLI::App *find = app.add_subcommand("find", "Find places by the beginnings of words in their names, and more");
    find->add_option("TERM", options->choice.words, "Words to look for; none for every place");
    options->choice.addTo(*find);
    find->add_option("--sort", options->sort, "Order of the results; without it nearest or latest first, or relevance")
        ->check(CLI::IsMember({"relevance", "name", "recent", "new"}));
    options->list.addTo(*find);
    find->callback(
        [&context, options] { context.run = [&context, options] { return findPlaces("find", *options, context); }; });

    const auto nearOptions = std::make_shared<FindOptions>();
    CLI::App *near = app.add_subcommand("near", "List the places nearest to a position or to a stored place");
    near->add_option("CENTRE", nearOptions->choice.position, "Position, or number or name of a stored place")
        ->required()
        ->transform(IsCentre);
    near->add_option("TERM", nearOptions->choice.words, "Words to look for in the names");
    nearOptions->choice.addRadiusOption(*near);
    nearOptions->list.addTo(*near);
    near->callback([&context, nearOptions] {
        context.run = [&context, nearOptions] { return findPlaces("near", *nearOptions, context); };
    });
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
        ListOptions list;
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
    options->list.addTo(*recent);
    recent->callback([&context, options, terms] {
        if (terms->count() > 0) {
            context.run = [&context, options] { return listRecentTerms(text(options->prefix), context.form); };
            return;
        }
        context.run = [&context, options] {
            return printFound("recent", options->list.form(context), [&](Error::Type *error, SearchHandle *handle) {
                return owned(PlaceManager().findRecentPlaces(error, handle, options->onlyMine, 0,
                                                             options->list.page.offset, options->list.page.limit));
            });
        };
    });
}

void addContacts(CLI::App &app, Context &context)
{
    struct Options
    {
        std::vector<std::string> terms;
        ListOptions list;
    };
    const auto options = std::make_shared<Options>();
    CLI::App *contacts = app.add_subcommand("contacts", "List the addresses of contacts, by name");
    contacts->add_option("TERM", options->terms, "Words to look for; none for every contact");
    options->list.addTo(*contacts);
    contacts->callback([&context, options] {
        context.run = [&context, options] {
            return printFound("contacts", options->list.form(context), [&](Error::Type *error, SearchHandle *handle) {
                return owned(InternalPlaceManager().findContacts(
                    error, handle, joined(options->terms),
                    SortRule::createSimpleSortRule(SortField::Name, SortOrder::Ascending), options->list.page.offset,
                    options->list.page.limit));
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
        reportNoneShown(false);
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
