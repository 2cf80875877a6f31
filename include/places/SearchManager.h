// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/Coordinates.h>
#include <places/Error.h>
#include <places/Global.h>
#include <places/SearchResult.h>
#include <places/SearchResultGroup.h>

#include <QtCore/QList>
#include <QtCore/QObject>
#include <QtCore/QString>

#include <memory>

namespace vela::platform::places
{

class SearchManagerPrivate;

/// Searches while the user types: searches several groups of places at once and reports each when it is found. A new
/// search replaces the previous one, which is not reported any more.
///
/// Call all functions on the manager's thread, which needs an event loop; signals are emitted there for every
/// connection type. Two threads of the manager call the places service. The manager may be destroyed at any time, also
/// by a slot of its signals; the destructor waits for outstanding replies of the service, at most 30 seconds.
class PLACES_EXPORT SearchManager : public QObject
{
    Q_OBJECT
public:
    explicit SearchManager(QObject *parent = nullptr);
    /// Emits cancelled() when a group is not searched completely, unless only SearchResultGroup::Suggestions are still
    /// delayed. Drops results that have not arrived.
    ~SearchManager() override;

    /// Searches each of these groups for a term. SearchResultGroup::Suggestions waits until 150 milliseconds have
    /// passed without another search, and returns at most 10 results.
    /// @param centre centre of the user's map; not valid when unknown.
    /// @param searchId a number of the caller, returned with every signal.
    /// @param groups the groups; each entry is reported once. Empty for SearchResultGroup::Local and
    /// SearchResultGroup::Suggestions.
    /// @param offset index of the first result in each group, from 0.
    /// @param limit maximum number of results per group.
    void search(const QString &term, const Coordinates &centre, int searchId,
                const QList<SearchResultGroup::Type> &groups = {}, int offset = 0, int limit = 20);

    /// The same without favourites. SearchResultGroup::Favorites itself is reported with Error::InvalidArgument.
    void searchNonFavorite(const QString &term, const Coordinates &centre, int searchId,
                           const QList<SearchResultGroup::Type> &groups = {}, int offset = 0, int limit = 20);

Q_SIGNALS:
    /// A search starts. Emitted before the call returns.
    void started(int searchId);
    /// The manager is destroyed before its last search is done. See ~SearchManager().
    void cancelled(int searchId);
    /// Reports the search of a group.
    /// @param error outcome; on failure the result contains only its group and the reason.
    /// @param result the found places, which belong to the manager's thread.
    /// @param last true for the last result of the search.
    void resultAvailable(vela::platform::places::Error::Type error, const vela::platform::places::SearchResult &result,
                         bool last, int searchId);

private:
    const std::unique_ptr<SearchManagerPrivate> d;
};

} // namespace vela::platform::places
