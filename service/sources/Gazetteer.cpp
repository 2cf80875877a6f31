// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "sources/Gazetteer.h"

#include "auxdata/AuxiliaryDataPrivate.h"
#include "GeoJsonReader.h"
#include "Input.h"
#include "Log.h"
#include "model/InternalTags.h"
#include "model/PlacePrivate.h"
#include "model/ProviderData.h"
#include "places/PointOfInterestAuxiliaryData.h"
#include "places/Tags.h"
#include "sources/GazetteerSql.h"
#include "store/Records.h"
#include "store/SqlFunctions.h"
#include "store/TextKeys.h"
#include "Vocabulary.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>

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

/// Grows with every change of the tables, so that an index of another version is not taken for one of this.
constexpr int INDEX_VERSION = 1;
/// What the external id of a category starts with.
constexpr char CATEGORY_PREFIX[] = "category:";
/// How far apart two places of one name may be that are held to be the same, in metres.
constexpr double SAME_PLACE_RADIUS = 500;
constexpr int STEPS_PER_CHECK = 10000;

/// "large airport" for "large_airport".
QString readable(const QString &category)
{
    return QString(category).replace(QLatin1Char('_'), QLatin1Char(' '));
}

QString textAt(const SQLite::Column &column)
{
    return QString::fromStdString(column.getString());
}

void bindPosition(SQLite::Statement &statement, int index, const Coordinates &position)
{
    if (!position.isValid())
        return;
    statement.bind(index, position.latitude());
    statement.bind(index + 1, position.longitude());
}

/// The first id that a statement selects; -1 when there is none.
qint64 firstId(SQLite::Statement &statement)
{
    return statement.executeStep() ? statement.getColumn(0).getInt64() : -1;
}

/// The columns that a search looks at.
const char *columnsOf(SearchKind kind)
{
    switch (kind) {
    case SearchKind::Address:
        return "name address";
    case SearchKind::Category:
        return "kind";
    case SearchKind::CategoryOrName:
        return "name alias kind";
    default:
        return "name alias";
    }
}

/// What columns have to match; empty when the term has no words.
QString matchExpressionOf(const ProviderSearch &search, const char *columns)
{
    const QString starts = matchExpression(search.term);
    return starts.isEmpty() ? QString() : QStringLiteral("{%1} : (%2)").arg(QLatin1String(columns), starts);
}

const char *orderOf(const ProviderSearch &search)
{
    switch (search.order) {
    case SearchOrder::Name:
        return sql::BY_NAME;
    case SearchOrder::NameBackwards:
        return sql::BY_NAME_BACKWARDS;
    case SearchOrder::NearFirst:
        return sql::NEAR_FIRST;
    case SearchOrder::FarFirst:
        return sql::FAR_FIRST;
    case SearchOrder::Relevance:
        break;
    }
    if (!words(search.term).isEmpty())
        return sql::BY_RELEVANCE;
    return search.centre.isValid() ? sql::NEAR_FIRST : sql::BY_WEIGHT;
}

/// What kind of suggestion a place of a category is.
QString suggestionTag(const Place &place)
{
    if (place.hasTag(Tags::Airport))
        return QLatin1String(InternalTags::SuggestionAirport);
    if (place.primaryAddress().city() == place.name())
        return QLatin1String(InternalTags::SuggestionAddress);
    return QLatin1String(InternalTags::SuggestionPointOfInterest);
}

/// The scalar that a JSON text stands for, as a text; empty for anything else.
QString scalarOf(const QString &json)
{
    const QJsonValue value = QJsonDocument::fromJson("[" + json.toUtf8() + "]").array().at(0);
    return value.isString() || value.isDouble() || value.isBool() ? value.toVariant().toString() : QString();
}

/// Makes one record of what a feature says of a place: its details become properties of the record of points of
/// interest, which carries the external id.
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
            const bool isForeign = record.type() == QLatin1String(geojson::vocabulary::FOREIGN_PROPERTIES);
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

/// Adds a place to those that were taken from the files.
void take(SQLite::Statement &row, Place &place, const QString &substituteId)
{
    PlacePrivate &data = *PlacePrivate::privateFromPublic(&place);
    const AuxiliaryData details = gatherDetails(data, substituteId);
    const Address address = data.primaryAddress();
    const QStringList parts = {address.street(),     address.city(),    address.region(),
                               address.postalCode(), address.country(), address.isoAlpha2CountryCode()};
    const QStringList aliases = data.aliases() + QStringList{details.property(QStringLiteral("keywords"))};
    const Coordinates position = data.primaryCoordinates();
    bindAll(row,
            {details.externalId(), searchKey(data.name()), sortKey(data.name()),
             searchKey(aliases.join(QLatin1Char(' '))), PointOfInterestAuxiliaryData(details).category(),
             searchKey(parts.join(QLatin1Char(' '))), searchKey(address.region()), searchKey(address.country()),
             address.isoAlpha2CountryCode(), position.latitude(), position.longitude(),
             details.property(QStringLiteral("population")).toDouble()},
            1);
    bindBlob(row, 13, fullRecordOf(place));
    row.exec();
    row.reset();
}

} // namespace

Gazetteer::Connection::Connection(const std::string &path)
    : database(path, SQLite::OPEN_READONLY | SQLite::OPEN_NOMUTEX)
{
    registerFunctions(database);
    const auto isLate = [](void *connection) -> int {
        return hasPassed(static_cast<Connection *>(connection)->deadline);
    };
    sqlite3_progress_handler(database.getHandle(), STEPS_PER_CHECK, isLate, this);
}

/// Lends a connection out for as long as it lives.
class Gazetteer::Lease
{
public:
    Lease(Gazetteer &gazetteer, Deadline deadline)
        : m_gazetteer(gazetteer)
    {
        {
            const std::lock_guard<std::mutex> lock(gazetteer.m_mutex);
            if (!gazetteer.m_idle.empty()) {
                m_connection = std::move(gazetteer.m_idle.back());
                gazetteer.m_idle.pop_back();
            }
        }
        if (!m_connection)
            m_connection = std::make_unique<Connection>(gazetteer.m_index);
        m_connection->deadline = deadline;
    }
    Lease(const Lease &) = delete;
    Lease &operator=(const Lease &) = delete;
    ~Lease()
    {
        const std::lock_guard<std::mutex> lock(m_gazetteer.m_mutex);
        m_gazetteer.m_idle.push_back(std::move(m_connection));
    }

    [[nodiscard]] SQLite::Database &database() const { return m_connection->database; }

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
    m_reader.join();
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
    State state = State::Ready;
    try {
        if (!isUpToDate())
            build();
    } catch (const std::exception &error) {
        if (!m_stopping)
            logError("the gazetteer cannot be read: %s", error.what());
        state = State::Failed;
    }
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_state = state;
    }
    m_stateChanged.notify_all();
}

/// Every file with its size and time of change.
std::string Gazetteer::filesAsTheyAre() const
{
    std::string files = std::to_string(INDEX_VERSION);
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
        return index.execAndGet(sql::SELECT_FILES).getString() == filesAsTheyAre();
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
        // It is made anew whenever it is not whole, so nothing has to be safe on the way.
        database.exec("PRAGMA journal_mode = OFF; PRAGMA synchronous = OFF");
        database.exec(sql::SCHEMA);
        SQLite::Transaction transaction(database);
        // Taken before they are read: a file that changes meanwhile is read again at the next start.
        SQLite::Statement files(database, sql::REMEMBER_FILES);
        files.bind(1, filesAsTheyAre());
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
    SQLite::Statement row(database, sql::TAKE);
    const QString name = QString::fromStdString(fs::path(path).filename().string());
    geojson::Input input(QString::fromLocal8Bit(path.c_str()));
    int count = 0;
    int skipped = 0;
    const QString problem = geojson::readGeoJson(input, [&](const geojson::ReadPlace &read) {
        ++count;
        if (read.place && read.place->hasCoordinates())
            take(row, *read.place, QStringLiteral("%1#%2").arg(name).arg(count));
        else
            ++skipped;
        return !m_stopping;
    });
    if (!problem.isEmpty())
        logError("the gazetteer's file %s: %s", path.c_str(), qUtf8Printable(problem));
    if (skipped > 0)
        logError("the gazetteer's file %s: %d features are no places", path.c_str(), skipped);
}

// ----------------------------------------------------------------------------------------------------- asking it

template <typename Answer>
Answer Gazetteer::ask(Deadline deadline, const std::function<void(SQLite::Database &, Answer &)> &ask)
{
    Answer answer;
    std::unique_lock<std::mutex> lock(m_mutex);
    if (!m_stateChanged.wait_until(lock, deadline, [this] { return m_state != State::Reading; }))
        answer.code = ReturnCode::TookTooLong;
    else if (m_state == State::Failed)
        answer.code = ReturnCode::ProviderFailed;
    lock.unlock();
    if (answer.code != ReturnCode::Success)
        return answer;
    try {
        const Lease lease(*this, deadline);
        ask(lease.database(), answer);
    } catch (const SQLite::Exception &error) {
        logError("the gazetteer failed: %s", error.what());
        // The next start makes it anew.
        if (error.getErrorCode() == SQLITE_CORRUPT)
            ::unlink(m_index.c_str());
        answer = {};
        answer.code = error.getErrorCode() == SQLITE_INTERRUPT ? ReturnCode::TookTooLong : ReturnCode::ProviderFailed;
    }
    return answer;
}

ProviderAnswer Gazetteer::search(const ProviderSearch &search)
{
    return ask<ProviderAnswer>(search.deadline, [&](SQLite::Database &database, ProviderAnswer &answer) {
        const bool suggests = search.kind == SearchKind::Suggestion || search.kind == SearchKind::CategorySuggestion;
        const bool isEmpty = words(searchKey(search.term)).isEmpty();
        if (isEmpty && (search.kind == SearchKind::Suggestion || !search.term.isEmpty()))
            return;
        // Completions among the categories come before those among the places.
        ProviderSearch rest = search;
        if (suggests) {
            const QStringList found = categories(database, search.term);
            for (const QString &category : found.mid(search.position, search.count))
                answer.places.push_back(suggestCategory(category));
            answer.hasMore = search.position + search.count < found.size();
            rest.position = std::max(0, search.position - found.size());
            rest.count = search.count - static_cast<int>(answer.places.size());
        }
        if (search.kind != SearchKind::CategorySuggestion && !answer.hasMore)
            findPlaces(database, rest, answer);
    });
}

void Gazetteer::findPlaces(SQLite::Database &database, const ProviderSearch &search, ProviderAnswer &answer)
{
    const QString match = matchExpressionOf(search, columnsOf(search.kind));
    const bool byDistance = search.order == SearchOrder::NearFirst || search.order == SearchOrder::FarFirst;
    SQLite::Statement row(database,
                          std::string(match.isEmpty() ? sql::ALL : sql::MATCHES) + orderOf(search) + sql::PAGE);
    row.bind(1, utf8(match));
    row.bind(2, utf8(searchKey(search.term)));
    row.bind(3, utf8(matchExpressionOf(search, "name")));
    bindPosition(row, 4, byDistance ? search.orderCentre : search.centre);
    row.bind(6, search.count + 1);
    row.bind(7, search.position);
    SQLite::Statement record(database, sql::SELECT_RECORD);
    for (int i = 0; i < search.count && row.executeStep(); ++i)
        answer.places.push_back(placeOf(record, row.getColumn(0).getInt64(), search));
    answer.hasMore = !row.isDone() && row.executeStep();
}

FoundPlace Gazetteer::placeAt(SQLite::Database &database, qint64 id) const
{
    SQLite::Statement record(database, sql::SELECT_RECORD);
    return placeOf(record, id, {});
}

FoundPlace Gazetteer::placeOf(SQLite::Statement &row, qint64 id, const ProviderSearch &search) const
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
    if (search.kind == SearchKind::Suggestion) {
        data.addTag(QLatin1String(InternalTags::Suggestion));
        data.addTag(suggestionTag(*place));
    }
    for (AuxiliaryData &record : data.m_auxiliaryData)
        AuxiliaryDataPrivate::fromPublic(record)->setProvider(description());
    return place;
}

QStringList Gazetteer::categories(SQLite::Database &database, const QString &term)
{
    QStringList found;
    SQLite::Statement row(database, sql::SELECT_CATEGORIES);
    while (row.executeStep()) {
        const QString category = textAt(row.getColumn(0));
        if (containsWords(searchKey(readable(category)), searchKey(term)))
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
    return ask<ProviderAnswer>(deadline, [&](SQLite::Database &database, ProviderAnswer &answer) {
        const bool isCategory = externalId.startsWith(QLatin1String(CATEGORY_PREFIX));
        SQLite::Statement row(database, isCategory ? sql::SELECT_BY_KIND : sql::SELECT_BY_EXTERNAL_ID);
        row.bind(1, utf8(isCategory ? externalId.mid(QLatin1String(CATEGORY_PREFIX).size()) : externalId));
        if (isCategory)
            bindPosition(row, 2, centre);
        if (const qint64 id = firstId(row); id >= 0)
            answer.places.push_back(placeAt(database, id));
    });
}

AuxiliaryAnswer Gazetteer::auxiliaryData(const PlaceIdentity &place, Deadline deadline)
{
    return ask<AuxiliaryAnswer>(deadline, [&](SQLite::Database &database, AuxiliaryAnswer &answer) {
        const bool byPosition = place.externalId.isEmpty();
        SQLite::Statement row(database, byPosition ? sql::SELECT_BY_POSITION : sql::SELECT_BY_EXTERNAL_ID);
        row.bind(1, utf8(byPosition ? searchKey(place.name) : place.externalId));
        if (byPosition) {
            bindPosition(row, 2, place.coordinates);
            row.bind(4, SAME_PLACE_RADIUS);
        }
        if (const qint64 id = firstId(row); id >= 0)
            answer.records = PlacePrivate::privateFromPublic(placeAt(database, id).get())->auxiliaryData();
    });
}

bool Gazetteer::isReady()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_state == State::Ready;
}

Coordinates Gazetteer::geocode(const Address &address, Deadline deadline)
{
    struct Answer
    {
        ReturnCode code = ReturnCode::Success;
        Coordinates position;
    };
    const auto found = ask<Answer>(deadline, [&](SQLite::Database &database, Answer &answer) {
        SQLite::Statement city(database, sql::SELECT_CITY);
        bindAll(city,
                {searchKey(address.city()), searchKey(address.country()), searchKey(address.region()),
                 address.isoAlpha2CountryCode().toUpper()},
                1);
        if (address.city().isEmpty() || !city.executeStep())
            return;
        const Coordinates position(city.getColumn(0).getDouble(), city.getColumn(1).getDouble());
        const bool isNamed = !address.country().isEmpty() || !address.isoAlpha2CountryCode().isEmpty()
                             || city.getColumn(2).getInt() != 0;
        // Of several cities in the whole world nobody knows which is meant.
        if (isNamed || !city.executeStep())
            answer.position = position;
    });
    return found.position;
}

} // namespace placesd
