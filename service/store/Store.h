// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Deadline.h"
#include "find/Query.h"
#include "sources/PlaceProvider.h"

#include <SQLiteCpp/SQLiteCpp.h>
#include <vela/system/SecurityPerimeter.h>

#include <QtCore/QStringList>

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace vela::platform::places
{
class AuxiliaryData;
class Place;
} // namespace vela::platform::places

namespace placesd
{

class FindSql;

/// A place that is not stored, and the number of the leaf of the search rule that found it.
struct Candidate
{
    int source = Rule::NO_SOURCE;
    FoundPlace place;
};

/// One connection to the database of places. It belongs to one thread at a time; writers take turns by the lock that
/// all connections share. Every function may throw SQLite::Exception, and a write that throws has changed nothing.
class Store
{
public:
    /// Opens the database, making it or bringing its schema up to date if need be.
    Store(const std::string &path, std::timed_mutex &writeLock);
    ~Store();

    /// Work that goes on past the deadline is interrupted.
    void startRequest(Deadline deadline);

    /// Runs `work` as one transaction, which is on the disk when this returns. A false result, like an exception, takes
    /// everything back.
    bool write(const std::function<bool()> &work);

    /// Stores a new place and gives it and its parts their ids.
    void insert(vela::platform::places::Place &place);
    /// Stores a place in the stead of `before`, which has the same id; new parts get ids.
    void update(vela::platform::places::Place &place, const vela::platform::places::Place &before);
    /// False when there is no such place.
    bool remove(qint64 id);
    /// Takes every place out of the recent bucket and removes those that nothing else keeps.
    void clearRecentBucket();

    /// What decides who may see or change a stored place; nothing when there is no such place.
    struct Standing
    {
        vela::system::SecurityPerimeter::Type perimeter;
        int persistenceMask;
    };
    std::optional<Standing> standingOf(qint64 id);

    /// The stored place; null when there is none.
    std::unique_ptr<vela::platform::places::Place> place(qint64 id);
    /// The record of a place, as it goes into a reply; empty when there is no such place.
    std::string storedRecord(qint64 id, bool headerOnly);
    QStringList tags();

    /// Keeps a term among the recent ones. An empty term is not kept.
    void rememberTerm(const QString &term);
    /// The recent terms that start with `prefix`, whatever its case and accents; newest first.
    QStringList recentTerms(const QString &prefix);

    /// Throws std::runtime_error when the tables of a database are not those that a placesd of some age made.
    static void requirePlaces(SQLite::Database &database);
    /// Throws when the database is damaged, or holds a place that cannot be read.
    void requireSoundness();
    /// Lets nothing that is stored from now on have an id that was in use in `other`.
    void keepIdsOf(Store &other);
    /// Puts everything that is stored here in the stead of what is stored in `other`, as one write.
    void copyOver(Store &other);

    /// The stored place that a candidate is; -1 for none. A suggestion is none, whatever it leads to.
    qint64 storedIdOf(const vela::platform::places::Place &candidate);
    /// The id of the stored place that has a record of this type and external id; -1 when there is none.
    qint64 idOf(const QString &externalId, const QString &type);

    /// The records of the places that a find among the stored places gives, from a position on.
    std::vector<std::string> find(const FindSql &find, int count, int offset);
    int count(const FindSql &find);
    /// The same among the stored places and these candidates. A candidate that is stored is that stored place.
    std::vector<std::string> find(const FindSql &find, const std::vector<Candidate> &candidates, bool headerOnly,
                                  int count, int offset);
    int count(const FindSql &find, const std::vector<Candidate> &candidates);

private:
    void migrate();
    /// A prepared statement, ready to be bound; it is kept for the next time.
    SQLite::Statement &statement(const std::string &sql);
    static void bindPlace(SQLite::Statement &statement, const vela::platform::places::Place &place);
    static void forgetForeignIds(vela::platform::places::Place &place, const vela::platform::places::Place &before);
    void writeParts(vela::platform::places::Place &place);
    void writeAllAnew();
    /// Null, and a message in the log, for a place that cannot be read.
    std::unique_ptr<vela::platform::places::Place> readablePlace(qint64 id);
    void stage(const std::vector<Candidate> &candidates, bool withParts);
    qint64 stageNew(const FoundPlace &candidate, bool withParts);
    void stageParts(const vela::platform::places::Place &place, qint64 id);
    SQLite::Statement &bindPage(const FindSql &find, int count, int offset);
    [[nodiscard]] std::string candidateRecord(qint64 id, bool headerOnly) const;
    void writeAuxiliary(vela::platform::places::AuxiliaryData &record, int64_t place);
    void writeRecords(const vela::platform::places::Place &place);
    static int interruptLate(void *store);

    SQLite::Database m_database;
    std::timed_mutex &m_writeLock;
    std::map<std::string, std::unique_ptr<SQLite::Statement>> m_statements;
    std::vector<FoundPlace> m_staged; ///< Candidates that are not stored, by their ids in the candidates' table.
    Deadline m_deadline = Deadline::max();
};

} // namespace placesd
