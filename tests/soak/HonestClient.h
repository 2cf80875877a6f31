// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "places/PlaceManager.h"
#include "soak/Score.h"

#include <functional>
#include <map>
#include <random>
#include <set>

/// A client that adds, fetches, finds and removes its own places, and compares the replies with the expected store. For
/// one thread.
class HonestClient
{
public:
    HonestClient(unsigned number, Score &score);

    /// Works until `stop`.
    void run(const std::atomic<bool> &stop);
    /// Searches all its places, which must fit into one reply.
    void checkAll();

private:
    using Error = vela::platform::places::Error;

    /// Sends a request and checks its outcome.
    /// @param isChange only a change may fail on a full disk.
    Error::Type ask(bool isChange, const std::function<Error::Type()> &request);
    void add();
    void remove(qint64 id);
    void fetch(qint64 id);
    /// True when all places had to be in the one reply.
    bool find();
    /// One of the places.
    qint64 any();
    void countFault(std::atomic<unsigned> &faults, const char *what, qint64 id);

    const QString m_word; ///< Prefix of the names of all its places, and of no other places.
    Score &m_score;
    std::mt19937 m_random;
    const vela::platform::places::PlaceManager m_manager;
    unsigned m_names = 0;               ///< Number of names used so far.
    std::map<qint64, QString> m_places; ///< Names of the places whose addition was acknowledged.
    std::set<qint64> m_removed;         ///< Ids with an acknowledged removal.
    std::set<QString> m_unknown;        ///< Names of places whose addition or removal was not answered.
};
