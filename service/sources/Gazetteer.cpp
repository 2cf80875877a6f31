// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "sources/Gazetteer.h"

#include "auxdata/AuxiliaryDataPrivate.h"
#include "formats/GeoJsonReader.h"
#include "formats/Input.h"
#include "formats/Vocabulary.h"
#include "Limits.h"
#include "Log.h"
#include "model/InternalTags.h"
#include "model/PlacePrivate.h"
#include "model/ProviderData.h"
#include "places/PointOfInterestAuxiliaryData.h"
#include "places/Tags.h"
#include "places/Utilities.h"
#include "sources/GazetteerQuestions.h"
#include "sources/GazetteerSql.h"
#include "sources/Readable.h"
#include "store/Nearest.h"
#include "store/Records.h"
#include "store/SqlFunctions.h"
#include "text/Folding.h"
#include "text/OtherNames.h"
#include "text/TextKeys.h"

#include <QtCore/QHash>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QRegularExpression>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <system_error>

#include <sqlite3.h>
#include <unistd.h>

namespace placesd
{

using namespace vela::platform::places;
using orix_places_protocol::ReturnCode;
namespace fs = std::filesystem;
namespace sql = gazetteer_sql;

namespace
{

/// Incremented with each change of the tables, so that an index of another version is not used.
constexpr int INDEX_VERSION = 4;
/// Prefix of the external id of a category.
constexpr char CATEGORY_PREFIX[] = "category:";
/// Places of the same name within this distance are the same place, in metres.
constexpr double SAME_PLACE_RADIUS = 500;
constexpr int STEPS_PER_CHECK = 10000;
constexpr qint64 NO_ID = -1;

/// Converts "large_airport" to "large airport".
QString readable(const QString &category)
{
    return QString(category).replace(QLatin1Char('_'), QLatin1Char(' '));
}

QString textAt(const SQLite::Column &column)
{
    return QString::fromStdString(column.getString());
}

/// The first result; NO_ID when there is none.
qint64 firstId(TierQuestion question)
{
    const std::vector<int64_t> ids = TierSearch(std::move(question)).page(0, 1);
    return ids.empty() ? NO_ID : ids.front();
}

/// The place with an external id; NO_ID when there is none.
qint64 idOf(SQLite::Database &database, const QString &externalId)
{
    SQLite::Statement row(database, sql::SELECT_BY_EXTERNAL_ID);
    row.bind(1, utf8(externalId));
    return row.executeStep() ? row.getColumn(0).getInt64() : NO_ID;
}

/// The suggestion tag for a place of a category.
QString suggestionTag(const Place &place)
{
    if (place.hasTag(Tags::Airport))
        return QLatin1String(InternalTags::SuggestionAirport);
    if (place.primaryAddress().city() == place.name())
        return QLatin1String(InternalTags::SuggestionAddress);
    return QLatin1String(InternalTags::SuggestionPointOfInterest);
}

/// The scalar of a JSON text, as text; empty for other JSON.
QString scalarOf(const QString &json)
{
    const QJsonValue value = QJsonDocument::fromJson("[" + json.toUtf8() + "]").array().at(0);
    return value.isString() || value.isDouble() || value.isBool() ? value.toVariant().toString() : QString();
}

/// Collects the details of a feature in one record: they become properties of the record of points of interest, which
/// has the external id.
AuxiliaryData gatherDetails(PlacePrivate &place, const QString &substituteId)
{
    auto &records = place.m_auxiliaryData;
    AuxiliaryData poi(AuxiliaryData::TypePointOfInterest);
    for (const AuxiliaryData &record : qAsConst(records)) {
        if (record.type() == AuxiliaryData::TypePointOfInterest)
            poi = record;
    }
    for (const AuxiliaryData &record : qAsConst(records)) {
        const QMap<QString, QString> members = record.properties();
        for (auto member = members.begin(); member != members.end(); ++member) {
            const bool isForeign = record.type() == QLatin1String(formats::vocabulary::FOREIGN_PROPERTIES);
            if (const QString detail = isForeign ? scalarOf(member.value()) : QString(); !detail.isEmpty())
                poi.addProperty(member.key(), detail);
        }
    }
    if (poi.externalId().isEmpty())
        poi.setExternalId(substituteId);
    records.clear();
    records.append(poi);
    return poi;
}

/// Names in the keywords of an airport.
QStringList keywordsOf(const AuxiliaryData &details)
{
    static const QRegularExpression SEPARATORS(QStringLiteral("[,;]"));
    QStringList keywords;
    const QStringList texts = details.property(QStringLiteral("keywords")).split(SEPARATORS, Qt::SkipEmptyParts);
    for (const QString &keyword : texts)
        keywords.append(keyword.trimmed());
    return keywords;
}

/// Prominence of a place as a number of people: its own population, or that of a city as prominent as the airport.
double weightOf(const AuxiliaryData &details, const QString &kind)
{
    static const QHash<QString, double> AIRPORTS = {{QStringLiteral("large_airport"), 40000},
                                                    {QStringLiteral("medium_airport"), 10000},
                                                    {QStringLiteral("small_airport"), 100}};
    const QString population = details.property(QStringLiteral("population"));
    return population.isEmpty() ? AIRPORTS.value(kind) : population.toDouble();
}

/// The name that matched a search, if it is not the place's own; else empty.
QString nameFound(const PlacePrivate &place, const Reading &reading)
{
    const auto isIn = [&reading](const QString &text) {
        const std::string key = utf8(indexKey(text));
        return std::any_of(reading.wordings.begin(), reading.wordings.end(),
                           [&key](const Wording &wording) { return !wording.isEmpty() && wording.isIn(key); });
    };
    if (reading.wordings.empty() || place.aliases().isEmpty() || isIn(place.name()))
        return {};
    const QStringList &names = place.aliases();
    const auto found = std::find_if(names.begin(), names.end(), isIn);
    return found == names.end() ? QString() : *found;
}

/// Statements that insert a place.
struct Take
{
    explicit Take(SQLite::Database &database)
        : record(database, sql::TAKE_RECORD)
        , keys(database, sql::TAKE)
        , name(database, sql::TAKE_NAME)
    {}

    SQLite::Statement record;
    SQLite::Statement keys;
    SQLite::Statement name;
};

void takeNames(SQLite::Statement &statement, qint64 number, const QStringList &names)
{
    for (const QString &name : names) {
        bindAll(statement, {number, searchKey(name)});
        statement.exec();
        statement.reset();
    }
}

/// @param number of the place, counted over all files.
void take(Take &statements, qint64 number, Place &place, const QString &substituteId)
{
    PlacePrivate &data = *PlacePrivate::privateFromPublic(&place);
    const AuxiliaryData details = gatherDetails(data, substituteId);
    const Address address = data.primaryAddress();
    const QStringList parts = {address.street(),     address.city(),    address.region(),
                               address.postalCode(), address.country(), address.isoAlpha2CountryCode()};
    const QStringList aliases = data.aliases() + keywordsOf(details);
    const QStringList names = otherNames(details);
    const std::string allNames = utf8(indexKey(QStringList{data.name()} + names));
    const std::string_view otherKeys = std::string_view(allNames).substr(searchKeyIn(allNames).size());
    for (const QString &name : names)
        data.addAlias(name);
    const QString kind = PointOfInterestAuxiliaryData(details).category();
    const Coordinates position = data.primaryCoordinates();
    bindAll(statements.keys, {number, position.latitude(), position.longitude(), searchKey(data.name()),
                              QString::fromUtf8(otherKeys.data(), static_cast<int>(otherKeys.size())),
                              sortKey(data.name()), kind, indexKey(kind), indexKey(aliases),
                              indexKey(parts.join(QLatin1Char(' '))), details.externalId(), searchKey(address.region()),
                              searchKey(address.country()), address.isoAlpha2CountryCode(), weightOf(details, kind)});
    statements.keys.exec();
    statements.keys.reset();
    takeNames(statements.name, number, names + aliases);
    statements.record.bind(1, static_cast<int64_t>(number));
    bindBlob(statements.record, 2, fullRecordOf(place));
    statements.record.exec();
    statements.record.reset();
}

} // namespace

Gazetteer::Connection::Connection(const std::string &path, std::shared_ptr<const Vocabulary> words)
    : database(path, SQLite::OPEN_READONLY | SQLite::OPEN_NOMUTEX)
    , vocabulary(std::move(words))
{
    registerNearest(database);
    const auto isLate = [](void *connection) -> int {
        return hasPassed(static_cast<Connection *>(connection)->deadline);
    };
    sqlite3_progress_handler(database.getHandle(), STEPS_PER_CHECK, isLate, this);
}

/// Borrows a connection for its lifetime.
class Gazetteer::Lease
{
public:
    Lease(Gazetteer &gazetteer, Deadline deadline)
        : m_gazetteer(gazetteer)
    {
        std::shared_ptr<const Vocabulary> vocabulary;
        {
            const std::lock_guard<std::mutex> lock(gazetteer.m_mutex);
            vocabulary = gazetteer.m_vocabulary;
            if (!gazetteer.m_idle.empty()) {
                m_connection = std::move(gazetteer.m_idle.back());
                gazetteer.m_idle.pop_back();
            }
        }
        if (!m_connection)
            m_connection = std::make_unique<Connection>(gazetteer.m_index, std::move(vocabulary));
        m_connection->deadline = deadline;
    }
    Lease(const Lease &) = delete;
    Lease &operator=(const Lease &) = delete;
    ~Lease()
    {
        const std::lock_guard<std::mutex> lock(m_gazetteer.m_mutex);
        // Closes a connection to an older index.
        if (m_connection->vocabulary == m_gazetteer.m_vocabulary)
            m_gazetteer.m_idle.push_back(std::move(m_connection));
    }

    [[nodiscard]] Connection &connection() const { return *m_connection; }

private:
    Gazetteer &m_gazetteer;
    std::unique_ptr<Connection> m_connection;
};

Gazetteer::Gazetteer(std::vector<std::string> files, std::string index)
    : m_files(std::move(files))
    , m_index(std::move(index))
    , m_reader([this] { prepare(); })
{}

Gazetteer::~Gazetteer()
{
    m_stopping = true;
}

void Gazetteer::reread()
{
    m_reader.runAgain();
}

Provider Gazetteer::description() const
{
    Provider provider;
    ProviderData &data = *ProviderData::fromPublic(provider);
    data.name = QStringLiteral("gazetteer");
    data.canRequestAdditionalData = true;
    data.supportedDataTypes = QStringList{AuxiliaryData::TypePointOfInterest};
    return provider;
}

// ---------------------------------------------------------------------------------------------- making the index

void Gazetteer::prepare()
{
    // Loads transliteration rules of several scripts, which takes too long during a search.
    inLatin(QStringLiteral("\u0416\u4E2D\u0E44"));
    std::shared_ptr<const Vocabulary> vocabulary;
    try {
        vocabulary = indexFiles();
    } catch (const std::exception &error) {
        if (!m_stopping)
            logError("the gazetteer was not read: %s; correct that and send SIGHUP", error.what());
    }
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (vocabulary) {
            m_state = State::Ready;
            ++m_generation;
            m_vocabulary = std::move(vocabulary);
            m_idle.clear();
        } else if (m_state == State::Reading) {
            m_state = State::Failed;
        }
    }
    m_stateChanged.notify_all();
}

/// Builds the index of the current files unless it exists, and returns its vocabulary.
std::shared_ptr<const Vocabulary> Gazetteer::indexFiles()
{
    for (const std::string &path : m_files)
        requireReadableFile(path);
    if (isUpToDate()) {
        if (auto vocabulary = readVocabulary())
            return vocabulary;
    }
    build();
    auto vocabulary = readVocabulary();
    if (!vocabulary)
        throw std::runtime_error(m_index + " was created but cannot be read");
    return vocabulary;
}

/// Null when the index is damaged.
std::shared_ptr<const Vocabulary> Gazetteer::readVocabulary()
{
    try {
        SQLite::Database index(m_index, SQLite::OPEN_READONLY);
        SQLite::Statement row(index, sql::SELECT_VOCABULARY);
        std::vector<std::string> words;
        while (row.executeStep() && !m_stopping)
            words.push_back(row.getColumn(0).getString());
        auto vocabulary = std::make_shared<Vocabulary>();
        vocabulary->add(std::move(words));
        return vocabulary;
    } catch (const SQLite::Exception &) {
        return nullptr;
    }
}

/// All files with size and modification time.
std::string Gazetteer::fileStates() const
{
    std::string files = std::to_string(INDEX_VERSION) + " " + keyVersion();
    for (const std::string &path : m_files) {
        std::error_code ignored;
        const auto time = fs::last_write_time(path, ignored).time_since_epoch().count();
        files += "\n" + fs::absolute(path).string() + " " + std::to_string(fs::file_size(path, ignored)) + " "
                 + std::to_string(time);
    }
    return files;
}

bool Gazetteer::isUpToDate() const
{
    try {
        SQLite::Database index(m_index, SQLite::OPEN_READONLY);
        return index.execAndGet(sql::SELECT_FILES).getString() == fileStates();
    } catch (const SQLite::Exception &) {
        return false;
    }
}

void Gazetteer::build()
{
    const std::string fresh = m_index + ".new";
    ::unlink(fresh.c_str());
    {
        SQLite::Database database(fresh, SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
        const auto isStopping = [](void *stopping) -> int { return *static_cast<std::atomic<bool> *>(stopping); };
        sqlite3_progress_handler(database.getHandle(), STEPS_PER_CHECK, isStopping, &m_stopping);
        database.exec(sql::BUILD_SETTINGS);
        database.exec(sql::SCHEMA);
        SQLite::Transaction transaction(database);
        // Recorded before reading: a file that changes meanwhile is read again at the next start.
        SQLite::Statement files(database, sql::REMEMBER_FILES);
        files.bind(1, fileStates());
        files.exec();
        for (const std::string &path : m_files)
            readFile(path, database);
        if (m_stopping)
            throw SQLite::Exception("the service stops", SQLITE_INTERRUPT);
        database.exec(sql::FINISH);
        transaction.commit();
    }
    if (std::rename(fresh.c_str(), m_index.c_str()) != 0)
        throw std::system_error(errno, std::generic_category(), m_index);
}

void Gazetteer::readFile(const std::string &path, SQLite::Database &database)
{
    Take statements(database);
    qint64 last = database.execAndGet(sql::SELECT_LAST_RECORD).getInt64();
    const QString name = QString::fromStdString(fs::path(path).filename().string());
    formats::Input input(QString::fromLocal8Bit(path.c_str()));
    int count = 0;
    int skipped = 0;
    const QString problem = formats::readGeoJson(input, {}, [&](const formats::ReadPlace &read) {
        ++count;
        const bool hasName = read.place && read.place->name() != QLatin1String(formats::vocabulary::UNNAMED);
        if (hasName && read.place->hasCoordinates())
            take(statements, ++last, *read.place, QStringLiteral("%1#%2").arg(name).arg(count));
        else
            ++skipped;
        return !m_stopping;
    });
    if (!problem.isEmpty())
        logError("the gazetteer's file %s: %s", path.c_str(), qUtf8Printable(problem));
    if (skipped > 0)
        logError(
            "the gazetteer's file %s: %d features have no position or no name, or are not places; they are left out",
            path.c_str(), skipped);
}

// ----------------------------------------------------------------------------------------------------- asking it

template <typename Answer>
Answer Gazetteer::ask(Deadline deadline, const std::function<void(Connection &, Answer &)> &ask)
{
    Answer answer;
    std::unique_lock<std::mutex> lock(m_mutex);
    if (!waitUntil(m_stateChanged, lock, deadline, [this] { return m_state != State::Reading; }))
        answer.code = ReturnCode::TookTooLong;
    else if (m_state == State::Failed)
        answer.code = ReturnCode::ProviderFailed;
    lock.unlock();
    if (answer.code != ReturnCode::Success)
        return answer;
    try {
        const Lease lease(*this, deadline);
        ask(lease.connection(), answer);
    } catch (const SQLite::Exception &error) {
        logError("the gazetteer failed: %s: %s", m_index.c_str(), error.what());
        // The next start builds it again.
        if (error.getErrorCode() == SQLITE_CORRUPT)
            ::unlink(m_index.c_str());
        answer = {};
        answer.code = error.getErrorCode() == SQLITE_INTERRUPT ? ReturnCode::TookTooLong : ReturnCode::ProviderFailed;
    }
    return answer;
}

ProviderAnswer Gazetteer::search(const ProviderSearch &search)
{
    return ask<ProviderAnswer>(search.deadline, [&](Connection &connection, ProviderAnswer &answer) {
        const bool suggests = search.kind == SearchKind::Suggestion || search.kind == SearchKind::CategorySuggestion;
        const Wording typed = Wording::of(search.term);
        if (typed.isEmpty() && (search.kind == SearchKind::Suggestion || !search.term.isEmpty()))
            return;
        // Completions of categories come before those of places.
        ProviderSearch rest = search;
        if (suggests) {
            const QStringList found = categories(connection.database, typed);
            const auto page = found.mid(search.position, search.count);
            for (const QString &category : page)
                answer.places.push_back(suggestCategory(category));
            answer.hasMore = search.position + search.count < found.size();
            rest.position = std::max(0, search.position - found.size());
            rest.count = search.count - static_cast<int>(answer.places.size());
        }
        if (search.kind != SearchKind::CategorySuggestion && !answer.hasMore)
            findPlaces(connection, rest, typed, answer);
    });
}

void Gazetteer::findPlaces(Connection &connection, const ProviderSearch &search, const Wording &typed,
                           ProviderAnswer &answer)
{
    const std::optional<Reading> reading = readingFor(connection, search, typed);
    if (!reading)
        return;
    SQLite::Database &database = connection.database;
    std::vector<int64_t> ids = TierSearch(questionOf({database, *connection.vocabulary}, search, *reading))
                                   .page(search.position, search.count + 1);
    answer.hasMore = ids.size() > static_cast<std::size_t>(search.count);
    if (answer.hasMore)
        ids.pop_back();
    SQLite::Statement record(database, sql::SELECT_RECORD);
    for (const int64_t id : ids)
        answer.places.push_back(placeOf(record, id, search, *reading));
}

std::optional<Reading> Gazetteer::readingFor(Connection &connection, const ProviderSearch &search, const Wording &typed)
{
    const GazetteerIndex index{connection.database, *connection.vocabulary};
    bool isFound = typed.isEmpty();
    const auto finds = [&](const Reading &reading) {
        const bool found = countOf(index, search, reading, 1) > 0;
        isFound = isFound || found;
        return found;
    };
    const auto frequency = [&](const Reading &reading) {
        return countOf(index, search, reading, limits::COUNTED_PLACES);
    };
    const Reading reading = chooseReading(typed, {*connection.vocabulary, finds, frequency});
    return isFound ? std::optional(reading) : std::nullopt;
}

FoundPlace Gazetteer::placeAt(SQLite::Database &database, qint64 id) const
{
    SQLite::Statement record(database, sql::SELECT_RECORD);
    return placeOf(record, id, {}, {});
}

FoundPlace Gazetteer::placeOf(SQLite::Statement &row, qint64 id, const ProviderSearch &search,
                              const Reading &reading) const
{
    row.reset();
    row.bind(1, static_cast<int64_t>(id));
    row.executeStep();
    std::shared_ptr<Place> place = decodePlace(blobOf(row.getColumn(0)));
    PlacePrivate &data = *PlacePrivate::privateFromPublic(place.get());
    const bool isExact = textAt(row.getColumn(1)) == searchKey(search.term);
    data.setCertainty(isExact ? SearchResultCertainty::Exact : SearchResultCertainty::Likely);
    data.setSource(search.kind == SearchKind::Address ? AbstractPlace::SourceGeocodeService
                                                      : AbstractPlace::SourcePointOfInterestService);
    if (data.description().isEmpty())
        data.setDescription(nameFound(data, reading));
    if (search.kind == SearchKind::Suggestion) {
        data.addTag(QLatin1String(InternalTags::Suggestion));
        data.addTag(suggestionTag(*place));
    }
    for (AuxiliaryData &record : data.m_auxiliaryData)
        AuxiliaryDataPrivate::fromPublic(record)->setProvider(description());
    return place;
}

QStringList Gazetteer::categories(SQLite::Database &database, const Wording &wording)
{
    QStringList found;
    SQLite::Statement row(database, sql::SELECT_CATEGORIES);
    while (row.executeStep()) {
        const QString category = textAt(row.getColumn(0));
        if (wording.isEmpty() || wording.isIn(utf8(indexKey(readable(category)))))
            found.append(category);
    }
    return found;
}

FoundPlace Gazetteer::suggestCategory(const QString &category) const
{
    AuxiliaryData record(AuxiliaryData::TypePointOfInterest);
    record.setExternalId(QLatin1String(CATEGORY_PREFIX) + category);
    record.addProperty(QStringLiteral("category"), category);
    AuxiliaryDataPrivate::fromPublic(record)->setProvider(description());
    auto place = std::make_shared<Place>();
    place->setName(readable(category));
    place->setSource(AbstractPlace::SourcePointOfInterestService);
    place->addTag(QLatin1String(InternalTags::Suggestion));
    place->addTag(QLatin1String(InternalTags::SuggestionCategory));
    place->addAuxiliaryData(record);
    return place;
}

ProviderAnswer Gazetteer::resolve(const QString &externalId, const Coordinates &centre, Deadline deadline)
{
    return ask<ProviderAnswer>(deadline, [&](Connection &connection, ProviderAnswer &answer) {
        SQLite::Database &database = connection.database;
        const QLatin1String prefix(CATEGORY_PREFIX);
        const qint64 id = externalId.startsWith(prefix)
                              ? firstId(questionOfKind(database, externalId.mid(prefix.size()), centre))
                              : idOf(database, externalId);
        if (id != NO_ID)
            answer.places.push_back(placeAt(database, id));
    });
}

AuxiliaryAnswer Gazetteer::auxiliaryData(const PlaceIdentity &place, Deadline deadline)
{
    return ask<AuxiliaryAnswer>(deadline, [&](Connection &connection, AuxiliaryAnswer &answer) {
        SQLite::Database &database = connection.database;
        const bool byPosition = place.externalId.isEmpty();
        if (byPosition && !place.coordinates.isValid())
            return;
        const qint64 id = byPosition ? firstId(questionOfName(database, place.name, place.coordinates))
                                     : idOf(database, place.externalId);
        if (id == NO_ID)
            return;
        const FoundPlace found = placeAt(database, id);
        const PlacePrivate &data = *PlacePrivate::privateFromPublic(found.get());
        if (!byPosition
            || Utilities::calculateDistanceInMeter(data.primaryCoordinates(), place.coordinates) < SAME_PLACE_RADIUS)
            answer.records = data.auxiliaryData();
    });
}

int Gazetteer::generation()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_generation;
}

Coordinates Gazetteer::geocode(const Address &address, Deadline deadline)
{
    struct Answer
    {
        ReturnCode code = ReturnCode::Success;
        Coordinates position;
    };
    const auto found = ask<Answer>(deadline, [&](Connection &connection, Answer &answer) {
        SQLite::Statement city(connection.database, sql::SELECT_CITY);
        bindAll(city, {searchKey(address.city()), searchKey(address.country()), searchKey(address.region()),
                       address.isoAlpha2CountryCode().toUpper()});
        if (address.city().isEmpty() || !city.executeStep())
            return;
        const Coordinates position(city.getColumn(0).getDouble(), city.getColumn(1).getDouble());
        const bool isNamed = !address.country().isEmpty() || !address.isoAlpha2CountryCode().isEmpty()
                             || city.getColumn(2).getInt() != 0;
        // Several cities in the world have this name; the right one is unknown.
        if (isNamed || !city.executeStep())
            answer.position = position;
    });
    return found.position;
}

} // namespace placesd
