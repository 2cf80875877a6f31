// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

/// Every statement of the store but the finds, whose conditions FindSql puts together. Each can be pasted into the
/// sqlite3 shell.
namespace placesd::sql
{

/// Version 1 of the schema. A place is kept as the two records that answer for it, ready to be sent; everything else
/// is there to find it by and can be made anew from the full record.
constexpr char SCHEMA_1[] = R"sql(
CREATE TABLE place(
    id          INTEGER PRIMARY KEY AUTOINCREMENT,
    name        TEXT    NOT NULL,
    name_key    TEXT    NOT NULL,               -- without case and accents
    sort_key    TEXT    NOT NULL,               -- without case
    owner       TEXT    NOT NULL,
    perimeter   INTEGER NOT NULL,
    mask        INTEGER NOT NULL,               -- 1 in the recent bucket, 2 saved
    usage_count INTEGER NOT NULL,
    last_used   INTEGER NOT NULL,               -- seconds since 1970-01-01T00:00:00 UTC, as the others
    created     INTEGER NOT NULL,
    updated     INTEGER NOT NULL,
    latitude    REAL,                           -- of the first location that has a position
    longitude   REAL,
    full_record BLOB    NOT NULL,
    header      BLOB    NOT NULL
);
CREATE INDEX place_by_name  ON place(sort_key, id);
CREATE INDEX place_by_key   ON place(name_key);
CREATE INDEX place_by_use   ON place(last_used, id);
CREATE INDEX place_by_count ON place(usage_count, last_used, id);
CREATE INDEX place_by_owner ON place(owner);
CREATE INDEX place_in_bucket ON place(mask) WHERE mask & 1;

CREATE TABLE location(
    id    INTEGER PRIMARY KEY AUTOINCREMENT,
    place INTEGER NOT NULL REFERENCES place(id) ON DELETE CASCADE
);
CREATE INDEX location_of_place ON location(place);

CREATE TABLE auxiliary(
    id    INTEGER PRIMARY KEY AUTOINCREMENT,
    place INTEGER NOT NULL REFERENCES place(id) ON DELETE CASCADE,
    type  TEXT    NOT NULL
);
CREATE INDEX auxiliary_of_place ON auxiliary(place);
CREATE INDEX auxiliary_by_type  ON auxiliary(type, place);

CREATE TABLE property(
    auxiliary INTEGER NOT NULL REFERENCES auxiliary(id) ON DELETE CASCADE,
    place     INTEGER NOT NULL,
    key       TEXT    NOT NULL,                 -- both without case and accents
    value     TEXT    NOT NULL
);
CREATE INDEX property_of_auxiliary ON property(auxiliary);
CREATE INDEX property_by_key ON property(key, place);

CREATE TABLE tag(
    tag   TEXT    NOT NULL,
    place INTEGER NOT NULL REFERENCES place(id) ON DELETE CASCADE,
    PRIMARY KEY(tag, place)
) WITHOUT ROWID;
CREATE INDEX tag_of_place ON tag(place);

CREATE TABLE search_term(
    term TEXT PRIMARY KEY,
    used INTEGER NOT NULL                       -- counts up with every search
) WITHOUT ROWID;

CREATE VIRTUAL TABLE name_index USING fts5(
    name, content='place', content_rowid='id', tokenize='unicode61 remove_diacritics 2', prefix='1 2 3', detail=full);
CREATE VIRTUAL TABLE position USING rtree(id, south, north, west, east);

CREATE TRIGGER place_added AFTER INSERT ON place BEGIN
    INSERT INTO name_index(rowid, name) VALUES (new.id, new.name);
    INSERT INTO position SELECT new.id, new.latitude, new.latitude, new.longitude, new.longitude
        WHERE new.latitude IS NOT NULL;
END;
CREATE TRIGGER place_removed AFTER DELETE ON place BEGIN
    INSERT INTO name_index(name_index, rowid, name) VALUES ('delete', old.id, old.name);
    DELETE FROM position WHERE id = old.id;
END;
CREATE TRIGGER place_renamed AFTER UPDATE OF name ON place WHEN old.name <> new.name BEGIN
    INSERT INTO name_index(name_index, rowid, name) VALUES ('delete', old.id, old.name);
    INSERT INTO name_index(rowid, name) VALUES (new.id, new.name);
END;
CREATE TRIGGER place_moved AFTER UPDATE OF latitude, longitude ON place
WHEN old.latitude IS NOT new.latitude OR old.longitude IS NOT new.longitude BEGIN
    DELETE FROM position WHERE id = old.id;
    INSERT INTO position SELECT new.id, new.latitude, new.latitude, new.longitude, new.longitude
        WHERE new.latitude IS NOT NULL;
END;
PRAGMA user_version = 1;
)sql";

/// Version 2: records are found by their ids at their sources, so that a place which a provider or a contact gives is
/// known again once it is stored.
constexpr char SCHEMA_2[] = R"sql(
ALTER TABLE auxiliary ADD COLUMN external_id TEXT NOT NULL DEFAULT '';
ALTER TABLE auxiliary ADD COLUMN provider    TEXT NOT NULL DEFAULT '';   -- name and URL
CREATE INDEX auxiliary_by_external_id ON auxiliary(external_id, type, provider) WHERE external_id <> '';

DROP TRIGGER place_added;
DROP TRIGGER place_removed;
DROP TRIGGER place_renamed;
DROP TABLE name_index;
CREATE VIRTUAL TABLE name_index USING fts5(
    name_key, content='place', content_rowid='id', prefix='1 2 3',
    tokenize="unicode61 remove_diacritics 0 categories 'L* N* M* Co So'");
INSERT INTO name_index(name_index) VALUES ('rebuild');
CREATE TRIGGER place_added AFTER INSERT ON place BEGIN
    INSERT INTO name_index(rowid, name_key) VALUES (new.id, new.name_key);
    INSERT INTO position SELECT new.id, new.latitude, new.latitude, new.longitude, new.longitude
        WHERE new.latitude IS NOT NULL;
END;
CREATE TRIGGER place_removed AFTER DELETE ON place BEGIN
    INSERT INTO name_index(name_index, rowid, name_key) VALUES ('delete', old.id, old.name_key);
    DELETE FROM position WHERE id = old.id;
END;
CREATE TRIGGER place_renamed AFTER UPDATE OF name_key ON place WHEN old.name_key <> new.name_key BEGIN
    INSERT INTO name_index(name_index, rowid, name_key) VALUES ('delete', old.id, old.name_key);
    INSERT INTO name_index(rowid, name_key) VALUES (new.id, new.name_key);
END;
PRAGMA user_version = 2;
)sql";

/// What a find looks at that is not stored, with the columns of what is; and which leaf of its rule found what.
constexpr char CANDIDATES[] = R"sql(
CREATE TEMP TABLE candidate(
    id INTEGER PRIMARY KEY, name_key TEXT, sort_key TEXT, is_contact INTEGER, latitude REAL, longitude REAL,
    owner TEXT DEFAULT '', usage_count INTEGER DEFAULT 0, last_used INTEGER DEFAULT 0, created INTEGER DEFAULT 0,
    updated INTEGER DEFAULT 0);
CREATE TEMP TABLE candidate_tag(tag TEXT, place INTEGER);
CREATE TEMP TABLE candidate_auxiliary(type TEXT, place INTEGER);
CREATE TEMP TABLE candidate_property(key TEXT, value TEXT, place INTEGER);
CREATE TEMP TABLE found(source INTEGER, place INTEGER, PRIMARY KEY(source, place)) WITHOUT ROWID;
)sql";

/// An acknowledged write is on the disk: every commit waits for it.
constexpr char CONNECTION_SETTINGS[] = R"sql(
PRAGMA journal_mode = WAL;
PRAGMA synchronous = FULL;
PRAGMA foreign_keys = ON;
PRAGMA cache_size = -16384;
PRAGMA mmap_size = 268435456;
PRAGMA temp_store = MEMORY;
)sql";

constexpr char INSERT_PLACE[] =
    "INSERT INTO place(name, name_key, sort_key, owner, perimeter, mask, usage_count, last_used, created, updated,"
    " latitude, longitude, full_record, header) VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9, ?10, ?11, ?12, x'', x'')";
constexpr char UPDATE_PLACE[] =
    "UPDATE place SET name = ?1, name_key = ?2, sort_key = ?3, owner = ?4, perimeter = ?5, mask = ?6,"
    " usage_count = ?7, last_used = ?8, created = ?9, updated = ?10, latitude = ?11, longitude = ?12 WHERE id = ?13";
constexpr char UPDATE_RECORDS[] = "UPDATE place SET full_record = ?1, header = ?2 WHERE id = ?3";
constexpr char SELECT_FULL_RECORD[] = "SELECT full_record FROM place WHERE id = ?1";
constexpr char SELECT_HEADER[] = "SELECT header FROM place WHERE id = ?1";
constexpr char SELECT_IDS[] = "SELECT id FROM place";
constexpr char SELECT_RECENT_BUCKET[] = "SELECT id FROM place WHERE mask & 1";
constexpr char SELECT_STANDING[] = "SELECT perimeter, mask FROM place WHERE id = ?1";
constexpr char DELETE_PLACE[] = "DELETE FROM place WHERE id = ?1";

constexpr char INSERT_LOCATION[] = "INSERT INTO location(id, place) VALUES (?1, ?2)";
constexpr char DELETE_LOCATIONS[] = "DELETE FROM location WHERE place = ?1";
constexpr char INSERT_AUXILIARY[] =
    "INSERT INTO auxiliary(id, place, type, external_id, provider) VALUES (?1, ?2, ?3, ?4, ?5)";
constexpr char SELECT_BY_EXTERNAL_ID[] =
    "SELECT place FROM auxiliary WHERE external_id = ?1 AND external_id <> '' AND type = ?2 ORDER BY place LIMIT 1";
constexpr char SELECT_BY_SOURCE[] = "SELECT place FROM auxiliary WHERE external_id = ?1 AND external_id <> ''"
                                    " AND type = ?2 AND provider = ?3 ORDER BY place LIMIT 1";
constexpr char DELETE_AUXILIARY[] = "DELETE FROM auxiliary WHERE place = ?1";
constexpr char INSERT_PROPERTY[] = "INSERT INTO property(auxiliary, place, key, value) VALUES (?1, ?2, ?3, ?4)";
constexpr char INSERT_TAG[] = "INSERT OR IGNORE INTO tag(tag, place) VALUES (?1, ?2)";
constexpr char DELETE_TAGS[] = "DELETE FROM tag WHERE place = ?1";
constexpr char SELECT_TAGS[] = "SELECT DISTINCT tag FROM tag ORDER BY tag";

/// Everything that a schema makes, but for what SQLite adds to it, which differs by its version.
constexpr char SELECT_TABLES[] =
    "SELECT type || ' ' || name || ' ' || tbl_name || ' ' || ifnull(sql, '') FROM sqlite_master"
    " WHERE name NOT LIKE 'sqlite#_%' ESCAPE '#' AND NOT (type = 'table' AND"
    " (name LIKE 'name#_index#_%' ESCAPE '#' OR name LIKE 'position#_%' ESCAPE '#')) ORDER BY 1";
/// Fails when the index of the names is not that of the places.
constexpr char CHECK_NAME_INDEX[] = "INSERT INTO name_index(name_index, rank) VALUES ('integrity-check', 1)";
constexpr char SELECT_RECORDS[] = "SELECT id, full_record, header FROM place";
constexpr char SELECT_HIGHEST_IDS[] = "SELECT name, seq FROM sqlite_sequence";
constexpr char INSERT_HIGHEST_ID[] =
    "INSERT INTO sqlite_sequence(name, seq) SELECT ?1, ?2 WHERE ?1 NOT IN (SELECT name FROM sqlite_sequence)";
constexpr char RAISE_HIGHEST_ID[] = "UPDATE sqlite_sequence SET seq = max(seq, ?2) WHERE name = ?1";

constexpr char FORGET_CANDIDATES[] = "DELETE FROM temp.candidate; DELETE FROM temp.candidate_tag;"
                                     " DELETE FROM temp.candidate_auxiliary; DELETE FROM temp.candidate_property;"
                                     " DELETE FROM temp.found";
constexpr char INSERT_CANDIDATE[] =
    "INSERT INTO temp.candidate(id, name_key, sort_key, is_contact, latitude, longitude)"
    " VALUES (?1, ?2, ?3, ?4, ?5, ?6)";
constexpr char INSERT_CANDIDATE_TAG[] = "INSERT INTO temp.candidate_tag(tag, place) VALUES (?1, ?2)";
constexpr char INSERT_CANDIDATE_AUXILIARY[] = "INSERT INTO temp.candidate_auxiliary(type, place) VALUES (?1, ?2)";
constexpr char INSERT_CANDIDATE_PROPERTY[] =
    "INSERT INTO temp.candidate_property(key, value, place) VALUES (?1, ?2, ?3)";
constexpr char INSERT_FOUND[] = "INSERT OR IGNORE INTO temp.found(source, place) VALUES (?1, ?2)";

constexpr char REMEMBER_TERM[] =
    "INSERT OR REPLACE INTO search_term(term, used) VALUES (?1, 1 + (SELECT ifnull(max(used), 0) FROM search_term))";
constexpr char SELECT_TERMS[] = "SELECT term FROM search_term ORDER BY used DESC";
constexpr char FORGET_OLD_TERMS[] =
    "DELETE FROM search_term WHERE term NOT IN (SELECT term FROM search_term ORDER BY used DESC LIMIT ?1)";

} // namespace placesd::sql
