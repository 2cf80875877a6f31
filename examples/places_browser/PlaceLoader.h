// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/AbstractPlace.h>
#include <places/Error.h>
#include <places/Place.h>

#include <QtCore/QObject>
#include <QtCore/QQueue>
#include <QtCore/QSharedPointer>
#include <QtCore/QThread>

#include <atomic>
#include <deque>
#include <functional>
#include <mutex>

/// Makes the calls that wait for the places service, one after the other on a thread of its own, so that a window never
/// waits with them. It belongs to the thread that made it; answers come as signals there. The destructor waits for the
/// fetch that is being made and for all favourites, 30 seconds each at the most.
class PlaceLoader : public QObject
{
    Q_OBJECT
public:
    using AnyPlace = QSharedPointer<vela::platform::places::AbstractPlace>;
    using FullPlace = QSharedPointer<vela::platform::places::Place>;
    using Job = std::function<void()>;

    PlaceLoader();
    ~PlaceLoader() override;

    /// Fetches a place in full. Answered by fetched(), unless another fetch is asked for before.
    void fetch(const AnyPlace &place);
    /// Has the last fetch not answered.
    void dropFetch() { ++m_lastFetch; }
    /// Makes a place a favourite, storing it if need be, or an ordinary one again. Answered by favoriteChanged().
    void setFavorite(const AnyPlace &place, bool isFavorite);

Q_SIGNALS:
    /// @param place the place in full; null when there was an error.
    void fetched(vela::platform::places::Error::Type error, const PlaceLoader::FullPlace &place);
    /// @param place the place as it is now, in full; null when it could not be fetched.
    void favoriteChanged(vela::platform::places::Error::Type error, const PlaceLoader::FullPlace &place);

    // To this object itself: what is to be done on the thread, and that a reply came from there.
    void toThread(const PlaceLoader::Job &job);
    void replied();

private:
    using Call = std::function<FullPlace(vela::platform::places::Error::Type &)>;
    using Answer = void (PlaceLoader::*)(vela::platform::places::Error::Type, const FullPlace &);

    struct Reply
    {
        vela::platform::places::Error::Type error;
        FullPlace place;
        std::function<bool()> isWanted;
        Answer answer;
    };

    /// Has `call` made on the thread if it is wanted then, and its result sent by `answer` if it still is.
    void make(const AnyPlace &place, const Call &call, const std::function<bool()> &isWanted, Answer answer);
    void giveReply(Reply reply);
    void takeReply();

    /// The places of the calls that are not answered yet: none of them may end on the other thread.
    QQueue<AnyPlace> m_asked;
    std::atomic<int> m_lastFetch = 0;
    std::mutex m_mutex;
    std::deque<Reply> m_replies; ///< Guarded by the mutex; moved in and out, so that each place has one owner.
    QThread m_thread;
    QObject m_worker; ///< Lives in the thread; what is sent to it is done there.
};
