// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

/// Tables of earlier versions, step by step, to verify databases and backups of these versions.
namespace placesd::old_schemas
{

/// Version 1. A place is stored as its two wire records; all other tables are search data and can be rebuilt from the
/// full record.
constexpr char VERSION_1[] = R"sql(
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

/// Version 2 adds external ids of records, so that a stored place is recognized when a provider or a contact gives it.
constexpr char VERSION_2[] = R"sql(
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

// Statements for the migration from these versions.

/// Removes everything that is rebuilt. Triggers first: the removal is no change of a place.
constexpr char DROP_REBUILT[] = R"sql(
DROP TRIGGER place_added;
DROP TRIGGER place_removed;
DROP TRIGGER place_renamed;
DROP TRIGGER place_moved;
DROP TABLE name_index;
DROP TABLE position;
DROP TABLE location;
DROP TABLE property;
DROP TABLE auxiliary;
DROP TABLE tag;
DROP INDEX place_by_name;
DROP INDEX place_by_key;
DROP INDEX place_by_use;
DROP INDEX place_by_count;
DROP INDEX place_by_owner;
DROP INDEX place_in_bucket;
ALTER TABLE place RENAME TO old_place;
ALTER TABLE search_term RENAME TO old_search_term;
)sql";
constexpr char SELECT_HIGHEST_ID[] = "SELECT ifnull(max(seq), 0) FROM sqlite_sequence WHERE name = ?1";
constexpr char SELECT_PLACES[] = "SELECT id, full_record, header, name_key, sort_key, owner, perimeter, mask, "
                                 "usage_count, last_used, created, updated,"
                                 " latitude, longitude FROM old_place ORDER BY id";
constexpr char SELECT_TERMS[] = "SELECT term FROM old_search_term ORDER BY used";
constexpr char DROP_OLD[] = "DROP TABLE old_place; DROP TABLE old_search_term";

} // namespace placesd::old_schemas
