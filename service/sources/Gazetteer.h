// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "sources/BackgroundJob.h"
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
#include <vector>

namespace vela::platform::places
{
class Address;
}

namespace placesd
{

/// The places of GeoJSON files. A background thread reads them once into an index on the disk, which later starts use
/// while the files are unchanged; even a million places need little memory. Callers block until the first index exists.
/// Thread-safe.
class Gazetteer : public PlaceProvider
{
public:
    /// @param index path of the index; not used by anything else.
    Gazetteer(std::vector<std::string> files, std::string index);
    ~Gazetteer() override;

    [[nodiscard]] vela::platform::places::Provider description() const override;
    ProviderAnswer search(const ProviderSearch &search) override;
    ProviderAnswer resolve(const QString &externalId, const vela::platform::places::Coordinates &centre,
                           Deadline deadline) override;
    AuxiliaryAnswer auxiliaryData(const PlaceIdentity &place, Deadline deadline) override;

    /// Checks the files again in the background. The old index is used until the new one exists, also when building
    /// fails.
    void reread();
    /// Number of indexes so far: 0 before the first one.
    [[nodiscard]] int generation();
    /// Position of the city in an address; invalid when it is unknown or ambiguous.
    vela::platform::places::Coordinates geocode(const vela::platform::places::Address &address, Deadline deadline);

private:
    enum class State
    {
        Reading,
        Ready,
        Failed
    };
    /// A connection to the index for one caller.
    struct Connection
    {
        Connection(const std::string &path, std::shared_ptr<const Vocabulary> words);
        SQLite::Database database;
        const std::shared_ptr<const Vocabulary> vocabulary; ///< Of the index.
        Deadline deadline = Deadline::max();
    };
    class Lease;

    void prepare();
    [[nodiscard]] bool isUpToDate() const;
    void build();
    std::shared_ptr<const Vocabulary> indexFiles();
    void readFile(const std::string &path, SQLite::Database &database);
    [[nodiscard]] std::string fileStates() const;

    /// Runs `ask` on a connection; converts a failure to the code of the result.
    template <typename Answer>
    Answer ask(Deadline deadline, const std::function<void(Connection &, Answer &)> &ask);
    void findPlaces(Connection &connection, const ProviderSearch &search, const Wording &typed, ProviderAnswer &answer);
    /// The reading of a search term: the same for all pages. Unset when no place is found.
    static std::optional<Reading> readingFor(Connection &connection, const ProviderSearch &search,
                                             const Wording &typed);
    std::shared_ptr<const Vocabulary> readVocabulary();
    /// Names of the categories that match each word of the term by prefix.
    static QStringList categories(SQLite::Database &database, const Wording &wording);
    [[nodiscard]] FoundPlace placeAt(SQLite::Database &database, qint64 id) const;
    /// @param row selects records by ids.
    FoundPlace placeOf(SQLite::Statement &row, qint64 id, const ProviderSearch &search, const Reading &reading) const;
    [[nodiscard]] FoundPlace suggestCategory(const QString &category) const;

    const std::vector<std::string> m_files;
    const std::string m_index;
    std::atomic<bool> m_stopping = false;

    std::mutex m_mutex;
    std::condition_variable m_stateChanged;
    // Guarded by the mutex.
    State m_state = State::Reading;
    int m_generation = 0;
    std::shared_ptr<const Vocabulary> m_vocabulary; ///< Vocabulary of the index; null before the first one.
    std::vector<std::unique_ptr<Connection>> m_idle;

    BackgroundJob m_reader;
};

} // namespace placesd
