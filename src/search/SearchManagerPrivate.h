// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "places/Coordinates.h"
#include "places/Error.h"
#include "places/SearchHandle.h"
#include "places/SearchResult.h"
#include "places/SearchResultGroup.h"
#include "search/WorkerQueue.h"

#include <QtCore/QObject>
#include <QtCore/QTimer>

#include <memory>

namespace vela::platform::places
{

class SearchManagerPrivate : public QObject
{
    Q_OBJECT
public:
    /// The search of one group.
    struct Job
    {
        int id = 0;
        SearchResultGroup::Type group = SearchResultGroup::None;
        QString term;
        Coordinates centre;
        int offset = 0;
        int limit = 0;
        int searchId = 0;
        bool excludeFavorites = false;
    };
    struct Answer
    {
        Error::Type error = Error::Unspecified;
        QString reason;
        SearchHandle handle;
        QList<QSharedPointer<AbstractPlace>> places;
    };
    using Queue = WorkerQueue<Job, Answer>;

    explicit SearchManagerPrivate(QObject *parent);
    ~SearchManagerPrivate() override;

    void search(const QString &term, const Coordinates &centre, int searchId,
                const QList<SearchResultGroup::Type> &groups, int offset, int limit, bool excludeFavorites);
    /// Call it once per resultAvailable(), in the slot. False when its search was replaced meanwhile.
    bool arrived() { return m_queue->arrived(); }

Q_SIGNALS:
    void started(int searchId);
    void cancelled(int searchId);
    /// Emitted on a worker thread, with the lock held.
    void resultAvailable(vela::platform::places::Error::Type error, const vela::platform::places::SearchResult &result,
                         bool last, int searchId);

private:
    static void findByGroup(const Job &job, Answer &answer);
    bool dataAvailable(const Job &job, const Answer &answer);
    void onTimedOut();
    void close();

    const std::shared_ptr<Queue> m_queue;
    QTimer m_timer;
    int m_searchId = 0;
};

} // namespace vela::platform::places
