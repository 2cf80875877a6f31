// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/SearchResultGroup.h>

#include <algorithm>
#include <iterator>

namespace tool
{

using vela::platform::places::SearchResultGroup;

/// Names of a group of results.
struct GroupNames
{
    SearchResultGroup::Type group;
    const char *name;  ///< For options and JSON.
    const char *title; ///< Heading above its results.
};

constexpr GroupNames GROUPS[] = {
    {SearchResultGroup::Local, "local", "On this device"},
    {SearchResultGroup::Favorites, "favourites", "Favourites"},
    {SearchResultGroup::Recent, "recent", "Recently picked and searched for"},
    {SearchResultGroup::RecentlyPicked, "picked", "Recently picked"},
    {SearchResultGroup::Contacts, "contacts", "Contacts"},
    {SearchResultGroup::NonContacts, "no-contacts", "On this device, without contacts"},
    {SearchResultGroup::Remote, "remote", "Elsewhere"},
    {SearchResultGroup::RemoteByName, "remote-names", "Elsewhere, by name"},
    {SearchResultGroup::Addresses, "addresses", "Addresses"},
    {SearchResultGroup::PointsOfInterest, "points-of-interest", "Points of interest"},
    {SearchResultGroup::Categories, "categories", "Points of interest, by category"},
    {SearchResultGroup::Suggestions, "suggestions", "Suggestions"},
    {SearchResultGroup::CategorySuggestions, "category-suggestions", "Suggested categories"},
};

/// The names of a group in the table.
inline const GroupNames &namesOf(SearchResultGroup::Type group)
{
    return *std::find_if(std::begin(GROUPS), std::end(GROUPS),
                         [group](const GroupNames &names) { return names.group == group; });
}

} // namespace tool
