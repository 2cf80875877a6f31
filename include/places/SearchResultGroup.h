// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/Global.h>

#include <QtCore/QObject>

namespace vela::platform::places
{

/// Groups for a search; each is searched separately.
struct PLACES_EXPORT SearchResultGroup
{
    Q_GADGET
public:
    enum Type : int
    {
        None = 0,                 ///< 0: no group.
        Recent = 2,               ///< 2: recently picked places and recent search terms.
        Favorites = 4,            ///< 4: favourites.
        RecentlyPicked = 5,       ///< 5: recently picked places.
        Contacts = 6,             ///< 6: places of contacts.
        Local = 7,                ///< 7: meeting rooms, stored places and places of contacts.
        RemoteByName = 8,         ///< 8: places of remote providers, by name.
        Addresses = 9,            ///< 9: addresses, found by remote providers.
        PointsOfInterest = 10,    ///< 10: points of interest, by name.
        Suggestions = 11,         ///< 11: completions of the typed text.
        Categories = 12,          ///< 12: points of interest, by category.
        CategorySuggestions = 13, ///< 13: completions of the typed text among the categories.
        NonContacts = 14,         ///< 14: stored places without those of contacts.
        Remote = 16,              ///< 16: places of remote providers, by category or name.
    };
    Q_ENUM(Type)
};

} // namespace vela::platform::places
