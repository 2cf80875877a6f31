// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "places/PlaceManager.h"
#include "soak/Score.h"

#include <functional>
#include <map>
#include <random>
#include <set>

/// A client that adds, fetches, finds and removes places of its own, and knows what has to be stored of them. For one
/// thread.
class HonestClient
{
public:
    HonestClient(unsigned number, Score &score);

    /// Works until `stop`.
    void run(const std::atomic<bool> &stop);
    /// Looks for all its places, which have to fit into one reply now.
    void checkAll();

private:
    using Error = vela::platform::places::Error;

    /// Makes a request and judges how it ended.
    /// @param isChange only a change may fail on a full disk.
    Error::Type ask(bool isChange, const std::function<Error::Type()> &request);
    void add();
    void remove(qint64 id);
    void fetch(qint64 id);
    /// Returns whether all were to be found in the one reply.
    bool find();
    /// One of the places.
    qint64 any();
    void countFault(std::atomic<unsigned> &faults, const char *what, qint64 id);

    const QString m_word; ///< The name of each of its places starts with it, and no other's does.
    Score &m_score;
    std::mt19937 m_random;
    const vela::platform::places::PlaceManager m_manager;
    unsigned m_names = 0;               ///< Given so far.
    std::map<qint64, QString> m_places; ///< Names of those whose addition was acknowledged.
    std::set<qint64> m_removed;         ///< Removal acknowledged.
    std::set<QString> m_unknown;        ///< Names of those whose addition or removal was not answered.
};
