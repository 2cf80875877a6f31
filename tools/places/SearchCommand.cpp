// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "Centre.h"
#include "Commands.h"
#include "Groups.h"
#include "Options.h"
#include "Search.h"
#include "SearchBox.h"

#include <algorithm>
#include <memory>

namespace tool
{

using namespace places;

namespace
{

std::vector<std::string> groupNames()
{
    std::vector<std::string> names;
    for (const GroupNames &names_ : GROUPS)
        names.emplace_back(names_.name);
    return names;
}

/// The groups with these names, without duplicates; SearchManager's default groups when there are no names.
QList<SearchResultGroup::Type> groupsOf(const std::vector<std::string> &names)
{
    QList<SearchResultGroup::Type> groups;
    for (const std::string &name : names) {
        const auto found = std::find_if(std::begin(GROUPS), std::end(GROUPS),
                                        [&](const GroupNames &each) { return each.name == name; });
        if (found != std::end(GROUPS) && !groups.contains(found->group))
            groups.append(found->group);
    }
    return groups.isEmpty() ? QList<SearchResultGroup::Type>{SearchResultGroup::Local, SearchResultGroup::Suggestions}
                            : groups;
}

struct Arguments
{
    std::vector<std::string> terms;
    std::vector<std::string> groups;
    std::string position;
    Page page;
    bool withoutFavorites = false;
    bool asYouType = false;
    std::string row;
    std::vector<int> saved;
};

SearchOptions optionsOf(const Arguments &arguments)
{
    SearchOptions options;
    options.term = joined(arguments.terms);
    options.groups = groupsOf(arguments.groups);
    options.limit = arguments.page.limit;
    options.withoutFavorites = arguments.withoutFavorites;
    options.row = rowOf(arguments.row);
    options.saved = arguments.saved;
    return options;
}

} // namespace

void addSearchCommand(CLI::App &app, Context &context)
{
    const auto arguments = std::make_shared<Arguments>();
    CLI::App *command = app.add_subcommand("search", "Search groups of places at once, stored ones and others");
    command->add_option("TERM", arguments->terms, "Words to look for");
    addListOption(*command, "--group", arguments->groups,
                  "Group to search; may be given several times (default: local, suggestions)")
        ->delimiter(',')
        ->transform(CLI::IsMember(groupNames(), CLI::ignore_case));
    command->add_option("--near", arguments->position, "Search around this position or stored place")
        ->transform(IsCentre);
    addLimitOption(*command, arguments->page);
    command->add_flag("--no-favourites", arguments->withoutFavorites, "Leave out favourites");
    addRowOption(*command, arguments->row);
    CLI::Option *saved = command
                             ->add_option("--save", arguments->saved,
                                          "Save the result of this number, as printed; may be given several times")
                             ->delimiter(',')
                             ->allow_extra_args(false)
                             ->transform(IsResult)
                             ->excludes("--format");
    command
        ->add_flag("--as-you-type", arguments->asYouType,
                   "Read the term from the terminal, key by key, and show or save the place that is chosen")
        ->excludes("--format")
        ->excludes(saved);
    command->callback([&context, arguments] {
        context.run = [&context, arguments] {
            SearchOptions options = optionsOf(*arguments);
            const ExitStatus status =
                arguments->position.empty() ? Done : findCentre(text(arguments->position), options.centre);
            if (status != Done)
                return status;
            return arguments->asYouType ? searchAsYouType(options, context) : search(options, context);
        };
    });
}

} // namespace tool
