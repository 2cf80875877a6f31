// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "places/Place.h"
#include "places/PlaceHeader.h"
#include "places/PlaceManager.h"
#include "places/SearchHandle.h"
#include "places/SortRule.h"

#include <atomic>
#include <chrono>
#include <cstdio>
#include <functional>
#include <map>
#include <memory>
#include <random>
#include <set>
#include <thread>

/// A temporary disturbance, such as a full disk, which excuses failures in the meantime. Call begin() and end() on one
/// thread; the other functions are safe on any thread.
class Disturbance
{
public:
    void begin() { ++m_changes; }
    void end() { ++m_changes; }

    /// The current time, for wasThereSince().
    [[nodiscard]] unsigned now() const { return m_changes; }
    [[nodiscard]] bool wasThereSince(unsigned start) const { return start % 2 == 1 || m_changes != start; }

private:
    std::atomic<unsigned> m_changes{0}; ///< Odd during the disturbance.
};

/// Counters of a soak test. Safe on any thread.
struct Score
{
    Disturbance outage;   ///< The service was killed and is not running again.
    Disturbance fullDisk; ///< No file of the service can grow.

    std::atomic<unsigned> kills{0};
    std::atomic<unsigned> stalls{0};
    std::atomic<unsigned> fullDisks{0};
    std::atomic<unsigned> acknowledged{0}; ///< Changes.
    std::atomic<unsigned> lost{0};         ///< Acknowledged changes.
    std::atomic<unsigned> wrong{0};        ///< Answers that neither a disturbance nor the stored places explain.
    std::atomic<unsigned> unanswered{0};   ///< Requests during an outage.
    std::atomic<unsigned> refused{0};      ///< Changes on a full disk.
    std::atomic<unsigned> hostile{0};      ///< Requests.

    void print() const
    {
        std::printf(
            "%u kills, %u stalls, %u full disks; %u acknowledged changes, %u lost; %u wrong answers, %u requests "
            "unanswered by a killed service, %u changes refused on a full disk; %u hostile requests\n",
            kills.load(), stalls.load(), fullDisks.load(), acknowledged.load(), lost.load(), wrong.load(),
            unanswered.load(), refused.load(), hostile.load());
        std::fflush(stdout);
    }
};

/// A client that adds, fetches, finds and removes its own places, and compares the replies with the expected store. For
/// one thread.
class HonestClient
{
public:
    HonestClient(unsigned number, Score &score)
        : m_word(QStringLiteral("honest%1").arg(number))
        , m_score(score)
        , m_random(number)
    {}

    /// Works until `stop`.
    void run(const std::atomic<bool> &stop)
    {
        while (!stop) {
            const auto choice = m_random() % 10;
            if (m_places.empty() || (choice < 4 && m_places.size() < MOST_PLACES))
                add();
            else if (choice < 6)
                remove(any());
            else if (choice < 9)
                fetch(any());
            else
                find();
        }
    }
    /// Searches all its places, which must fit into one reply.
    void checkAll()
    {
        if (!find())
            countFault(m_score.wrong, "not all are found at the end", 0);
    }

private:
    using Error = vela::platform::places::Error;
    static constexpr std::size_t MOST_PLACES = 200;
    static constexpr int PAGE = 10000;
    /// Delay before the next request when the service is down.
    static constexpr std::chrono::milliseconds PAUSE{10};

    /// A description of up to several thousand letters.
    static QString textOf(const QString &name) { return name.repeated(1 + static_cast<int>(qHash(name, 1) % 300)); }

    /// Sends a request and checks its outcome.
    /// @param isChange only a change may fail on a full disk.
    Error::Type ask(bool isChange, const std::function<Error::Type()> &request)
    {
        const unsigned outage = m_score.outage.now();
        const unsigned fullDisk = m_score.fullDisk.now();
        const Error::Type error = request();
        const bool wasUp = !m_score.outage.wasThereSince(outage);
        if (error == Error::Success) {
            m_score.acknowledged += isChange ? 1U : 0U;
        } else if (!wasUp && (error == Error::ServiceUnavailable || error == Error::CommunicationFailed)) {
            ++m_score.unanswered;
            std::this_thread::sleep_for(PAUSE);
        } else if (isChange && error == Error::StorageFailed && m_score.fullDisk.wasThereSince(fullDisk)) {
            ++m_score.refused;
        } else if (error != Error::NotFound) {
            countFault(m_score.wrong, "error", error);
        }
        return error;
    }
    void add()
    {
        const QString name = m_word + QStringLiteral(" %1").arg(++m_names);
        vela::platform::places::Place place;
        place.setName(name);
        place.setDescription(textOf(name));
        vela::platform::places::Location location;
        location.setCoordinates({46, 7});
        place.addLocation(location);
        const Error::Type error = ask(true, [&] { return m_manager.addPlace(&place); });
        if (error == Error::Success)
            m_places[place.id()] = name;
        else if (error != Error::StorageFailed)
            m_unknown.insert(name);
    }
    void remove(qint64 id)
    {
        const Error::Type error = ask(true, [&] { return m_manager.removePlace(id); });
        if (error == Error::StorageFailed)
            return;
        if (error == Error::Success)
            m_removed.insert(id);
        else if (error == Error::NotFound)
            countFault(m_score.lost, "place to remove", id);
        else
            m_unknown.insert(m_places[id]);
        m_places.erase(id);
    }
    void fetch(qint64 id)
    {
        std::unique_ptr<vela::platform::places::Place> place;
        const Error::Type error = ask(false, [&] {
            Error::Type outcome = Error::Unspecified;
            place.reset(m_manager.getPlace(id, &outcome));
            return outcome;
        });
        if (error == Error::NotFound) {
            countFault(m_score.lost, "place to fetch", id);
            m_places.erase(id);
        } else if (error == Error::Success
                   && (place->id() != id || place->name() != m_places[id]
                       || place->description() != textOf(m_places[id]))) {
            countFault(m_score.wrong, "another place", id);
            m_places.erase(id);
        }
    }
    /// True when all places had to be in the one reply.
    bool find()
    {
        vela::platform::places::SearchHandle handle;
        QList<vela::platform::places::PlaceHeader *> found;
        const Error::Type error = ask(false, [&] {
            Error::Type outcome = Error::Unspecified;
            found = m_manager.findPlaces(m_word, &outcome, &handle, {}, 0, PAGE);
            return outcome;
        });
        std::map<qint64, QString> missing = m_places;
        for (const auto *header : found) {
            const QString name = header->name();
            const auto known = missing.find(header->id());
            // For a word that no place has, a find may use other spellings, for example words of other clients.
            const bool isOther = m_places.empty() && !name.startsWith(m_word);
            if (known != missing.end() && known->second == name)
                missing.erase(known);
            else if (!isOther && m_unknown.insert(name).second)
                countFault(m_removed.count(header->id()) > 0 ? m_score.lost : m_score.wrong, "found", header->id());
        }
        qDeleteAll(found);
        // A reply is cut when other clients use up the memory.
        const bool isWhole = error == Error::Success && !handle.hasMoreData();
        for (const auto &place : missing) {
            if (!isWhole)
                break;
            countFault(m_score.lost, "place to find", place.first);
            m_places.erase(place.first);
        }
        return isWhole;
    }
    /// One of the places.
    qint64 any()
    {
        auto place = m_places.begin();
        std::advance(place, m_random() % m_places.size());
        return place->first;
    }
    void countFault(std::atomic<unsigned> &faults, const char *what, qint64 id)
    {
        if (++faults <= 20)
            std::fprintf(stderr, "%s: %s, %lld\n", qPrintable(m_word), what, id);
    }

    const QString m_word; ///< Prefix of the names of all its places, and of no other places.
    Score &m_score;
    std::mt19937 m_random;
    const vela::platform::places::PlaceManager m_manager;
    unsigned m_names = 0;               ///< Number of names used so far.
    std::map<qint64, QString> m_places; ///< Names of the places whose addition was acknowledged.
    std::set<qint64> m_removed;         ///< Ids with an acknowledged removal.
    std::set<QString> m_unknown;        ///< Names of places whose addition or removal was not answered.
};
