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

/// Searches while the user types: asks for several groups of places at once and reports each as it is found. A new
/// search replaces the one before, of which nothing is reported any more.
///
/// A manager belongs to the thread it lives in, which needs an event loop: its functions are called there and all its
/// signals are emitted there, however a slot is connected. Two threads of its own ask the places service. A manager may
/// be destroyed at any moment, also by a slot of one of its signals; that waits for the answers that the service owes
/// it, 30 seconds at the most.
class PLACES_EXPORT SearchManager : public QObject
{
    Q_OBJECT
public:
    explicit SearchManager(QObject *parent = nullptr);
    /// Emits cancelled() when a group has yet to be searched or is being searched, unless only
    /// SearchResultGroup::Suggestions are still held back. Results on their way to this thread are dropped.
    ~SearchManager() override;

    /// Searches each of these groups for a term. SearchResultGroup::Suggestions is held back until 150 milliseconds
    /// have passed without another search, and limited to 10 results.
    /// @param centre where the user looks at the map; not valid when unknown.
    /// @param searchId a number of the caller's own that comes back with every signal.
    /// @param groups the groups, each reported once for each time it stands here; empty for SearchResultGroup::Local
    /// and SearchResultGroup::Suggestions.
    /// @param offset index of the first result wanted in each group, from 0.
    /// @param limit largest number of results wanted of each group.
    void search(const QString &term, const Coordinates &centre, int searchId,
                const QList<SearchResultGroup::Type> &groups = {}, int offset = 0, int limit = 20);

    /// The same without favourites. SearchResultGroup::Favorites itself is reported with Error::InvalidArgument.
    void searchNonFavorite(const QString &term, const Coordinates &centre, int searchId,
                           const QList<SearchResultGroup::Type> &groups = {}, int offset = 0, int limit = 20);

Q_SIGNALS:
    /// A search has begun. Emitted before the call returns.
    void started(int searchId);
    /// The manager is being destroyed before its last search was done. See ~SearchManager().
    void cancelled(int searchId);
    /// A group was searched.
    /// @param error what went wrong; the result is then empty, but for its group.
    /// @param result what was found. The places live in the thread that the manager lives in.
    /// @param last true for the last result of the search.
    void resultAvailable(vela::platform::places::Error::Type error, const vela::platform::places::SearchResult &result,
                         bool last, int searchId);

private:
    const std::unique_ptr<SearchManagerPrivate> d;
};

} // namespace vela::platform::places
