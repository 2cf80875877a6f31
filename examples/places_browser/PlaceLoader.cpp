// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "PlaceLoader.h"

#include <places/InternalPlaceManager.h>

#include <memory>

using namespace vela::platform::places;

PlaceLoader::PlaceLoader()
{
    qRegisterMetaType<Job>("PlaceLoader::Job");
    m_worker.moveToThread(&m_thread);
    connect(this, &PlaceLoader::toThread, &m_worker, [](const Job &job) { job(); });
    connect(this, &PlaceLoader::replied, this, &PlaceLoader::takeReply);
    m_thread.start();
}

PlaceLoader::~PlaceLoader()
{
    dropFetch();
    // Behind what was asked for before: no favourite is lost.
    Q_EMIT toThread([this] { m_thread.quit(); });
    m_thread.wait();
}

void PlaceLoader::fetch(const AnyPlace &place)
{
    const auto isWanted = [this, number = ++m_lastFetch] { return number == m_lastFetch; };
    const auto call = [place = place.data()](Error::Type &error) {
        return FullPlace(InternalPlaceManager().getPlace(place, &error));
    };
    make(place, call, isWanted, &PlaceLoader::fetched);
}

void PlaceLoader::setFavorite(const AnyPlace &place, bool isFavorite)
{
    // The window reads the object that it shows, so the favourite is made of another one.
    const auto call = [place = place.data(), isFavorite](Error::Type &error) {
        const InternalPlaceManager manager;
        FullPlace own(manager.getPlace(place, &error));
        if (own)
            error = isFavorite ? manager.fav(own.data()) : manager.unfav(own.data());
        return own;
    };
    make(
        place, call, [] { return true; }, &PlaceLoader::favoriteChanged);
}

void PlaceLoader::make(const AnyPlace &place, const Call &call, const std::function<bool()> &isWanted, Answer answer)
{
    m_asked.enqueue(place);
    Q_EMIT toThread([this, call, isWanted, answer] {
        Reply reply{Error::Success, {}, isWanted, answer};
        if (isWanted())
            reply.place = call(reply.error);
        if (reply.place)
            reply.place->moveToThread(thread());
        giveReply(std::move(reply));
    });
}

void PlaceLoader::giveReply(Reply reply)
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_replies.push_back(std::move(reply));
    }
    Q_EMIT replied();
}

void PlaceLoader::takeReply()
{
    Reply reply{};
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        reply = std::move(m_replies.front());
        m_replies.pop_front();
    }
    m_asked.dequeue();
    if (reply.isWanted())
        Q_EMIT(this->*reply.answer)(reply.error, reply.place);
}
