// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

/// Every statement of the gazetteer. Each can be pasted into the sqlite3 shell.
namespace placesd::gazetteer_sql
{

/// Numbers of the places follow their weight: the best known comes first.
constexpr char SCHEMA[] = R"sql(
CREATE TABLE made_of(files TEXT NOT NULL);      -- the files as they were when they were read
CREATE TABLE feature(
    id           INTEGER PRIMARY KEY,
    external_id  TEXT NOT NULL,
    name_key     TEXT NOT NULL,                 -- without case and accents, as the other keys
    sort_key     TEXT NOT NULL,
    kind         TEXT NOT NULL,
    region_key   TEXT NOT NULL,
    country_key  TEXT NOT NULL,
    country_code TEXT NOT NULL,
    latitude     REAL NOT NULL,
    longitude    REAL NOT NULL,
    record       BLOB NOT NULL
);
CREATE TABLE category(kind TEXT PRIMARY KEY) WITHOUT ROWID;
CREATE VIRTUAL TABLE words USING fts5(
    name, alias, kind, address, content='', prefix='1 2 3',  -- all of them search keys
    tokenize="unicode61 remove_diacritics 0 categories 'L* N* M* Co So'");
CREATE TEMP TABLE taken(
    external_id, name_key, sort_key, alias, kind, address, region_key, country_key, country_code, latitude,
    longitude, weight, record);
)sql";

constexpr char TAKE[] = "INSERT INTO taken VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9, ?10, ?11, ?12, ?13)";

constexpr char FINISH[] = R"sql(
CREATE TEMP TABLE ranked AS SELECT rowid AS number FROM taken ORDER BY weight DESC, rowid;
INSERT INTO feature SELECT r.rowid, t.external_id, t.name_key, t.sort_key, t.kind, t.region_key, t.country_key,
        t.country_code, t.latitude, t.longitude, t.record
    FROM ranked r JOIN taken t ON t.rowid = r.number ORDER BY r.rowid;
INSERT INTO words(rowid, name, alias, kind, address) SELECT r.rowid, t.name_key, t.alias, t.kind, t.address
    FROM ranked r JOIN taken t ON t.rowid = r.number ORDER BY r.rowid;
INSERT INTO category SELECT DISTINCT kind FROM feature WHERE kind <> '';
CREATE INDEX feature_by_external_id ON feature(external_id);
CREATE INDEX feature_by_name ON feature(name_key);
CREATE INDEX feature_by_kind ON feature(kind);
DROP TABLE temp.ranked;
DROP TABLE temp.taken;
ANALYZE;
)sql";

constexpr char REMEMBER_FILES[] = "INSERT INTO made_of(files) VALUES (?1)";
constexpr char SELECT_FILES[] = "SELECT files FROM made_of";

constexpr char SELECT_CATEGORIES[] = "SELECT kind FROM category ORDER BY kind";
constexpr char SELECT_RECORD[] = "SELECT record, name_key FROM feature WHERE id = ?1";
constexpr char SELECT_BY_EXTERNAL_ID[] = "SELECT id FROM feature WHERE external_id = ?1 ORDER BY id LIMIT 1";
constexpr char SELECT_BY_KIND[] = "SELECT id FROM feature f WHERE kind = ?1"
                                  " ORDER BY distance(f.latitude, f.longitude, ?2, ?3), id LIMIT 1";
/// The one of this name that is less than so many metres away.
constexpr char SELECT_BY_POSITION[] = "SELECT id FROM feature f WHERE name_key = ?1"
                                      " AND distance(f.latitude, f.longitude, ?2, ?3) < ?4 ORDER BY"
                                      " distance(f.latitude, f.longitude, ?2, ?3), id LIMIT 1";
/// Cities of a name in a country, if that is given; those in the region come first. Two are enough to know that there
/// are several.
constexpr char SELECT_CITY[] =
    "SELECT latitude, longitude, region_key = ?3 AS fits FROM feature WHERE name_key = ?1 AND ((?2 = '' AND ?4 = '')"
    " OR (?2 <> '' AND country_key = ?2) OR (?4 <> '' AND country_code = ?4)) ORDER BY fits DESC, id LIMIT 2";

// A search: what is looked at, and in which order. ?1 is the expression to match, ?2 the key of the term, ?3 the
// expression that names match, ?4 and ?5 the centre, or NULL, ?6 and ?7 the page.
constexpr char ALL[] = "SELECT f.id FROM feature f";
constexpr char MATCHES[] = "SELECT f.id FROM words JOIN feature f ON f.id = words.rowid WHERE words MATCH ?1";
/// Those of just that name come first, then those whose name starts so, then those whose name has the words; of these
/// the nearest, or else the best known.
constexpr char BY_RELEVANCE[] =
    " ORDER BY CASE WHEN f.name_key = ?2 THEN 0 WHEN substr(f.name_key, 1, length(?2)) = ?2 THEN 1"
    " WHEN f.id IN (SELECT rowid FROM words WHERE words MATCH ?3) THEN 2 ELSE 3 END,"
    " distance(f.latitude, f.longitude, ?4, ?5), f.id";
constexpr char BY_WEIGHT[] = " ORDER BY f.id";
constexpr char BY_NAME[] = " ORDER BY f.sort_key, f.id";
constexpr char BY_NAME_BACKWARDS[] = " ORDER BY f.sort_key DESC, f.id";
constexpr char NEAR_FIRST[] = " ORDER BY distance(f.latitude, f.longitude, ?4, ?5), f.id";
constexpr char FAR_FIRST[] = " ORDER BY distance(f.latitude, f.longitude, ?4, ?5) DESC, f.id";
constexpr char PAGE[] = " LIMIT ?6 OFFSET ?7";

} // namespace placesd::gazetteer_sql
