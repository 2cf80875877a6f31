// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "places/SearchManager.h"

#include "search/SearchManagerPrivate.h"

namespace vela::platform::places
{

namespace
{

QList<SearchResultGroup::Type> orDefault(const QList<SearchResultGroup::Type> &groups)
{
    return groups.isEmpty() ? QList<SearchResultGroup::Type>{SearchResultGroup::Local, SearchResultGroup::Suggestions}
                            : groups;
}

} // namespace

SearchManager::SearchManager(QObject *parent)
    : QObject(parent)
    , d(std::make_unique<SearchManagerPrivate>(this))
{
    qRegisterMetaType<Error::Type>("vela::platform::places::Error::Type");
    qRegisterMetaType<SearchResult>("vela::platform::places::SearchResult");
    connect(d.get(), &SearchManagerPrivate::started, this, &SearchManager::started);
    connect(d.get(), &SearchManagerPrivate::cancelled, this, &SearchManager::cancelled);
    const auto forward = [this, sender = d.get()](Error::Type error, const SearchResult &result, bool last,
                                                  int searchId) {
        if (sender->arrived())
            Q_EMIT resultAvailable(error, result, last, searchId);
    };
    connect(d.get(), &SearchManagerPrivate::resultAvailable, this, forward, Qt::QueuedConnection);
}

SearchManager::~SearchManager() = default;

void SearchManager::search(const QString &term, const Coordinates &centre, int searchId,
                           const QList<SearchResultGroup::Type> &groups, int offset, int limit)
{
    d->search(term, centre, searchId, orDefault(groups), offset, limit, false);
}

void SearchManager::searchNonFavorite(const QString &term, const Coordinates &centre, int searchId,
                                      const QList<SearchResultGroup::Type> &groups, int offset, int limit)
{
    d->search(term, centre, searchId, orDefault(groups), offset, limit, true);
}

} // namespace vela::platform::places
