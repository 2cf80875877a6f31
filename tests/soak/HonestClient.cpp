// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "soak/HonestClient.h"

#include "places/Place.h"
#include "places/PlaceHeader.h"
#include "places/SearchHandle.h"
#include "places/SortRule.h"

#include <chrono>
#include <memory>
#include <thread>

using namespace vela::platform::places;
using namespace std::chrono;

namespace
{

constexpr std::size_t MOST_PLACES = 200;
constexpr int PAGE = 10000;
/// Delay before the next request when the service is down.
constexpr milliseconds PAUSE{10};

/// A description of up to several thousand letters.
QString textOf(const QString &name)
{
    return name.repeated(1 + static_cast<int>(qHash(name, 1) % 300));
}

} // namespace

HonestClient::HonestClient(unsigned number, Score &score)
    : m_word(QStringLiteral("honest%1").arg(number))
    , m_score(score)
    , m_random(number)
{}

void HonestClient::run(const std::atomic<bool> &stop)
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

void HonestClient::checkAll()
{
    if (!find())
        countFault(m_score.wrong, "not all are found at the end", 0);
}

Error::Type HonestClient::ask(bool isChange, const std::function<Error::Type()> &request)
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

void HonestClient::add()
{
    const QString name = m_word + QStringLiteral(" %1").arg(++m_names);
    Place place;
    place.setName(name);
    place.setDescription(textOf(name));
    Location location;
    location.setCoordinates(Coordinates(46, 7));
    place.addLocation(location);
    const Error::Type error = ask(true, [&] { return m_manager.addPlace(&place); });
    if (error == Error::Success)
        m_places[place.id()] = name;
    else if (error != Error::StorageFailed)
        m_unknown.insert(name);
}

void HonestClient::remove(qint64 id)
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

void HonestClient::fetch(qint64 id)
{
    std::unique_ptr<Place> place;
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

bool HonestClient::find()
{
    SearchHandle handle;
    QList<PlaceHeader *> found;
    const Error::Type error = ask(false, [&] {
        Error::Type outcome = Error::Unspecified;
        found = m_manager.findPlaces(m_word, &outcome, &handle, SortRule(), 0, PAGE);
        return outcome;
    });
    std::map<qint64, QString> missing = m_places;
    for (const PlaceHeader *header : found) {
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

qint64 HonestClient::any()
{
    auto place = m_places.begin();
    std::advance(place, m_random() % m_places.size());
    return place->first;
}

void HonestClient::countFault(std::atomic<unsigned> &faults, const char *what, qint64 id)
{
    if (++faults <= 20)
        std::fprintf(stderr, "%s: %s, %lld\n", qPrintable(m_word), what, id);
}
