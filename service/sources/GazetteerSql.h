// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

/// All SQL statements of the gazetteer. Each can be pasted into the sqlite3 shell.
namespace placesd::gazetteer_sql
{

/// An incomplete index is built again, so writes need no durability. The cache limits the memory for pages, and for
/// each sorter, in KiB.
constexpr char BUILD_SETTINGS[] = "PRAGMA journal_mode = OFF; PRAGMA synchronous = OFF; PRAGMA cache_size = -16384";

/// Ids are assigned by prominence, the most prominent place first. Columns for searches are separate from the records,
/// so that testing a place reads a short row.
constexpr char SCHEMA[] = R"sql(
CREATE TABLE made_of(files TEXT NOT NULL);      -- the files as they were when they were read
CREATE TABLE category(id INTEGER PRIMARY KEY, kind TEXT NOT NULL UNIQUE);
CREATE TABLE feature(
    id           INTEGER PRIMARY KEY,
    latitude     REAL NOT NULL,
    longitude    REAL NOT NULL,
    category     INTEGER NOT NULL REFERENCES category(id),
    name_key     TEXT NOT NULL,                 -- without case and accents
    other_names  TEXT NOT NULL,                 -- names in other languages, and other spellings of all names
    sort_key     TEXT NOT NULL,
    kind_key     TEXT NOT NULL,                 -- index keys, as the two below
    alias_key    TEXT NOT NULL,
    address_key  TEXT NOT NULL,
    external_id  TEXT NOT NULL,
    region_key   TEXT NOT NULL,
    country_key  TEXT NOT NULL,
    country_code TEXT NOT NULL,
    record       INTEGER NOT NULL REFERENCES record(id)
);
CREATE TABLE other_name(                        -- codes, and names besides the place's own
    key     TEXT NOT NULL,                      -- as name_key
    feature INTEGER NOT NULL REFERENCES feature(id),
    PRIMARY KEY(key, feature)
) WITHOUT ROWID;
CREATE TABLE record(id INTEGER PRIMARY KEY, record BLOB NOT NULL);     -- in the order of the files
CREATE VIRTUAL TABLE position USING rtree(id, south, north, west, east);
CREATE VIRTUAL TABLE words USING fts5(
    name, alias, kind, address, content='', prefix='1 2 3',
    tokenize="unicode61 remove_diacritics 0 categories 'L* N* M* Co So'");
CREATE VIRTUAL TABLE vocabulary USING fts5vocab('words', 'row');
CREATE TEMP TABLE taken(
    record INTEGER PRIMARY KEY, latitude, longitude, name_key, other_names, sort_key, kind, kind_key, alias_key, address_key,
    external_id, region_key, country_key, country_code, weight);
CREATE TEMP TABLE taken_name(record INTEGER, key TEXT, PRIMARY KEY(record, key)) WITHOUT ROWID;
)sql";

constexpr char TAKE[] =
    "INSERT INTO temp.taken VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9, ?10, ?11, ?12, ?13, ?14, ?15)";
constexpr char TAKE_NAME[] = "INSERT OR IGNORE INTO temp.taken_name VALUES (?1, ?2)";
constexpr char TAKE_RECORD[] = "INSERT INTO record(id, record) VALUES (?1, ?2)";

constexpr char SELECT_LAST_RECORD[] = "SELECT ifnull(max(id), 0) FROM record";

constexpr char FINISH[] = R"sql(
INSERT INTO category(kind) SELECT DISTINCT kind FROM temp.taken;
INSERT INTO feature SELECT NULL, t.latitude, t.longitude, c.id, t.name_key, t.other_names, t.sort_key, t.kind_key, t.alias_key,
        t.address_key, t.external_id, t.region_key, t.country_key, t.country_code, t.record
    FROM temp.taken t JOIN category c ON c.kind = t.kind ORDER BY t.weight DESC, t.record;
DROP TABLE temp.taken;
INSERT INTO other_name SELECT n.key, f.id FROM feature f CROSS JOIN temp.taken_name n ON n.record = f.record
    WHERE n.key NOT IN ('', f.name_key) ORDER BY n.key, f.id;
DROP TABLE temp.taken_name;
INSERT INTO words(rowid, name, alias, kind, address)
    SELECT id, name_key || ' ' || other_names, alias_key, kind_key, address_key FROM feature ORDER BY id;
INSERT INTO position SELECT id, latitude, latitude, longitude, longitude FROM feature;
CREATE INDEX feature_by_external_id ON feature(external_id);
CREATE INDEX feature_by_name ON feature(name_key);
CREATE INDEX feature_by_sort_key ON feature(sort_key);
CREATE INDEX feature_by_category ON feature(category);
ANALYZE;
)sql";

constexpr char REMEMBER_FILES[] = "INSERT INTO made_of(files) VALUES (?1)";
constexpr char SELECT_FILES[] = "SELECT files FROM made_of";

constexpr char SELECT_VOCABULARY[] = "SELECT term FROM vocabulary";
constexpr char COUNT_SOME[] = "SELECT count(*) FROM (SELECT 1 FROM words WHERE words MATCH ?1 LIMIT ?2)";
constexpr char SELECT_CATEGORIES[] = "SELECT kind FROM category WHERE kind <> '' ORDER BY kind";
constexpr char SELECT_RECORD[] =
    "SELECT r.record, f.name_key FROM feature f JOIN record r ON r.id = f.record WHERE f.id = ?1";
constexpr char SELECT_BY_EXTERNAL_ID[] = "SELECT id FROM feature WHERE external_id = ?1 ORDER BY id LIMIT 1";
/// Cities with a name, optionally in a country; those in the region first. Two rows show that the name is ambiguous.
constexpr char SELECT_CITY[] =
    "SELECT latitude, longitude, region_key = ?3 AS fits FROM feature WHERE name_key = ?1 AND ((?2 = '' AND ?4 = '')"
    " OR (?2 <> '' AND country_key = ?2) OR (?4 <> '' AND country_code = ?4)) ORDER BY fits DESC, id LIMIT 2";

// A search selects ROWS from one of these. CROSS JOIN and INDEXED BY fix the order.
constexpr char ROWS[] = "SELECT f.id, f.latitude, f.longitude, f.category, f.name_key, f.sort_key, f.kind_key,"
                        " f.alias_key, f.address_key, f.other_names ";

// Ordered.
constexpr char BY_WEIGHT[] = "FROM feature f ORDER BY f.id";
constexpr char MATCHES_BY_WEIGHT[] =
    "FROM words CROSS JOIN feature f ON f.id = words.rowid WHERE words MATCH ?1 ORDER BY words.rowid";
constexpr char BY_NAME[] = "FROM feature f INDEXED BY feature_by_sort_key ORDER BY f.sort_key, f.id";
constexpr char BY_NAME_BACKWARDS[] = "FROM feature f INDEXED BY feature_by_sort_key ORDER BY f.sort_key DESC, f.id";
constexpr char BY_DISTANCE[] = "FROM position p CROSS JOIN feature f ON f.id = p.id WHERE p.id MATCH nearest(?1, ?2)";

// Unordered.
constexpr std::size_t NAMES_AT_ONCE = 8;
constexpr char NAMED[] = "FROM feature f INDEXED BY feature_by_name WHERE f.name_key = ?1";
/// For up to NAMES_AT_ONCE names.
constexpr char NAMED_ONE_OF[] =
    "FROM feature f INDEXED BY feature_by_name WHERE f.name_key IN (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8)";
constexpr char OTHERWISE_NAMED[] = "FROM other_name n CROSS JOIN feature f ON f.id = n.feature WHERE n.key = ?1";
constexpr char NAMES_BETWEEN[] = "FROM feature f INDEXED BY feature_by_name WHERE f.name_key >= ?1 AND f.name_key < ?2";
constexpr char OF_CATEGORY[] = "FROM feature f INDEXED BY feature_by_category WHERE f.category = ?1";
constexpr char SELECT_CATEGORY[] = "SELECT id FROM category WHERE kind = ?1";

} // namespace placesd::gazetteer_sql
