// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sources/PlaceProvider.h"
#include "text/Vocabulary.h"
#include "text/Wording.h"

#include <SQLiteCpp/SQLiteCpp.h>

#include <atomic>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace vela::platform::places
{
class Address;
}

namespace placesd
{

/// The places of GeoJSON files. They are read once, in the background, into an index of its own on the disk, which the
/// next start finds as long as the files stay as they are; so even a million places take little memory. Who asks before
/// the index is there waits for it.
class Gazetteer : public PlaceProvider
{
public:
    /// @param index where the index is kept; nobody else uses that path.
    Gazetteer(std::vector<std::string> files, std::string index);
    ~Gazetteer() override;

    [[nodiscard]] vela::platform::places::Provider description() const override;
    ProviderAnswer search(const ProviderSearch &search) override;
    ProviderAnswer resolve(const QString &externalId, const vela::platform::places::Coordinates &centre,
                           Deadline deadline) override;
    AuxiliaryAnswer auxiliaryData(const PlaceIdentity &place, Deadline deadline) override;

    /// Whether nobody has to wait for the index any more.
    [[nodiscard]] bool isReady();
    /// Position of the city that an address names; invalid when it is not known, or which of several is meant.
    vela::platform::places::Coordinates geocode(const vela::platform::places::Address &address, Deadline deadline);

private:
    enum class State
    {
        Reading,
        Ready,
        Failed
    };
    /// A connection to the index, for one caller at a time.
    struct Connection
    {
        explicit Connection(const std::string &path);
        SQLite::Database database;
        Deadline deadline = Deadline::max();
    };
    class Lease;

    void prepare();
    [[nodiscard]] bool isUpToDate() const;
    void build();
    void readFile(const std::string &path, SQLite::Database &database);
    [[nodiscard]] std::string filesAsTheyAre() const;

    /// Runs `ask` on a connection; whatever goes wrong becomes the code of what it returns.
    template <typename Answer>
    Answer ask(Deadline deadline, const std::function<void(SQLite::Database &, Answer &)> &ask);
    void findPlaces(SQLite::Database &database, const ProviderSearch &search, const Wording &typed,
                    ProviderAnswer &answer);
    /// How the term of a search is read: the same for each page of it. Nothing where no place is found.
    std::optional<Reading> readingFor(SQLite::Database &database, const ProviderSearch &search,
                                      const Wording &typed) const;
    bool readVocabulary();
    /// Names of the categories that have a word starting with each word of the term.
    static QStringList categories(SQLite::Database &database, const Wording &wording);
    [[nodiscard]] FoundPlace placeAt(SQLite::Database &database, qint64 id) const;
    /// @param row selects records by ids.
    FoundPlace placeOf(SQLite::Statement &row, qint64 id, const ProviderSearch &search, const Reading &reading) const;
    [[nodiscard]] FoundPlace suggestCategory(const QString &category) const;

    const std::vector<std::string> m_files;
    const std::string m_index;
    std::atomic<bool> m_stopping = false;

    Vocabulary m_vocabulary; ///< Of the index; does not change once that is ready.

    std::mutex m_mutex;
    std::condition_variable m_stateChanged;
    // Guarded by the mutex.
    State m_state = State::Reading;
    std::vector<std::unique_ptr<Connection>> m_idle;

    std::thread m_reader;
};

} // namespace placesd
