// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

/// The tables of the store, and all statements that change or fetch their content. Each can be pasted into the sqlite3
/// shell. Statements of finds are in FindSql.h.
namespace placesd::sql
{

/// Tables of schema version 3. A place has a short row for finds and two compressed wire records (see
/// RecordCompressor). Rows and all other tables can be rebuilt from the full record. Since version 4, name_key is an
/// index key: it can end with other spellings of the name.
constexpr char TABLES[] = R"sql(
CREATE TABLE place(
    id          INTEGER PRIMARY KEY,
    name_key    TEXT    NOT NULL,               -- without case and accents
    sort_key    TEXT    NOT NULL,               -- without case
    favorite    INTEGER NOT NULL,               -- 0 or 1, as the two below
    contact     INTEGER NOT NULL,
    room        INTEGER NOT NULL,
    perimeter   INTEGER NOT NULL,
    mask        INTEGER NOT NULL,               -- 1 in the recent bucket, 2 saved
    usage_count INTEGER NOT NULL,
    last_used   INTEGER NOT NULL,               -- seconds since 1970-01-01T00:00:00 UTC, as the others
    created     INTEGER NOT NULL,
    updated     INTEGER NOT NULL,
    latitude    REAL,                           -- of the first location that has a position
    longitude   REAL,
    facets      BLOB    NOT NULL                -- numbers of the facets, packed
);
-- Each index ends with the id, so that it serves an order together with its ties, in both directions. Along some of
-- them names are looked for, and so they hold the names.
CREATE INDEX place_by_key       ON place(name_key);
CREATE INDEX place_by_name      ON place(sort_key, id, name_key);
CREATE INDEX place_by_relevance ON place(usage_count, last_used, id, name_key);
CREATE INDEX place_by_count     ON place(usage_count);
CREATE INDEX place_by_use       ON place(last_used);
CREATE INDEX place_by_creation  ON place(created);
CREATE INDEX place_by_update    ON place(updated);
CREATE INDEX bucket_by_use      ON place(last_used, id, name_key, mask) WHERE mask & 1;
CREATE INDEX favorite_by_name   ON place(sort_key, id, name_key, favorite) WHERE favorite;
CREATE INDEX contact_by_name    ON place(sort_key, id, name_key, contact) WHERE contact;
CREATE INDEX room_by_name       ON place(sort_key, id, name_key, room) WHERE room;
CREATE INDEX place_nowhere      ON place(latitude) WHERE latitude IS NULL;

CREATE TABLE record(
    place       INTEGER PRIMARY KEY REFERENCES place(id) ON DELETE CASCADE,
    full_record BLOB NOT NULL,
    header      BLOB NOT NULL
);
CREATE TABLE dictionary(bytes BLOB NOT NULL);   -- what all records are packed by

CREATE TABLE last_id(place INTEGER NOT NULL, location INTEGER NOT NULL, auxiliary INTEGER NOT NULL);
INSERT INTO last_id VALUES (0, 0, 0);

CREATE TABLE facet(
    id     INTEGER PRIMARY KEY,
    kind   INTEGER NOT NULL,                    -- 1 owner, 2 tag, 3 type, 4 quality, 5 mask, 6 key of a property
    text   TEXT    NOT NULL,
    places INTEGER NOT NULL,
    UNIQUE(kind, text)
);
CREATE TABLE place_of_facet(                    -- of the kinds 1 to 4, by relevance
    facet       INTEGER NOT NULL,
    usage_count INTEGER NOT NULL,
    last_used   INTEGER NOT NULL,
    place       INTEGER NOT NULL,
    PRIMARY KEY(facet, usage_count, last_used, place)
) WITHOUT ROWID;

CREATE TABLE property(
    key   INTEGER NOT NULL,                     -- its facet
    value TEXT    NOT NULL,                     -- its beginning, without case and accents
    place INTEGER NOT NULL,
    PRIMARY KEY(key, value, place)
) WITHOUT ROWID;

CREATE TABLE origin(                            -- what a record is known by at its source
    type        TEXT    NOT NULL,
    external_id TEXT    NOT NULL,
    provider    TEXT    NOT NULL,               -- name and URL
    place       INTEGER NOT NULL,
    PRIMARY KEY(type, external_id, provider, place)
) WITHOUT ROWID;

CREATE TABLE search_term(
    term TEXT PRIMARY KEY,
    key  TEXT    NOT NULL,                      -- without case and accents
    used INTEGER NOT NULL                       -- counts up with every search
) WITHOUT ROWID;

CREATE VIRTUAL TABLE name_index USING fts5(
    name_key, content='place', content_rowid='id', prefix='1 2 3', detail=none, columnsize=0,
    tokenize="unicode61 remove_diacritics 0 categories 'L* N* M* Co So'");
CREATE VIRTUAL TABLE position USING rtree(id, south, north, west, east);

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
CREATE TRIGGER place_moved AFTER UPDATE OF latitude, longitude ON place
WHEN old.latitude IS NOT new.latitude OR old.longitude IS NOT new.longitude BEGIN
    DELETE FROM position WHERE id = old.id;
    INSERT INTO position SELECT new.id, new.latitude, new.latitude, new.longitude, new.longitude
        WHERE new.latitude IS NOT NULL;
END;
)sql";

/// Added in version 4: the word index of all texts of a place, including names. The index stores no texts, so a removal
/// must pass the old text.
constexpr char TEXT_TABLES[] = R"sql(
CREATE VIRTUAL TABLE text_index USING fts5(
    text_key, content='', prefix='1 2 3', detail=none, columnsize=0,
    tokenize="unicode61 remove_diacritics 0 categories 'L* N* M* Co So'");
CREATE VIRTUAL TABLE word USING fts5vocab(text_index, row);
CREATE TABLE key_rules(version TEXT NOT NULL);  -- by which the keys of all tables were made
PRAGMA user_version = 4;
)sql";

/// Added in version 5: the user who added a place.
constexpr char GUEST_TABLES[] = R"sql(
CREATE TABLE guest(                             -- places that came by the open channel
    place INTEGER PRIMARY KEY REFERENCES place(id) ON DELETE CASCADE,
    user  INTEGER NOT NULL,                     -- who added it
    bytes INTEGER NOT NULL                      -- of its records and of what it is found by
);
CREATE TABLE guest_share(user INTEGER PRIMARY KEY, places INTEGER NOT NULL, bytes INTEGER NOT NULL);
CREATE TRIGGER guest_added AFTER INSERT ON guest BEGIN
    INSERT INTO guest_share VALUES (new.user, 1, new.bytes)
        ON CONFLICT(user) DO UPDATE SET places = places + 1, bytes = bytes + new.bytes;
END;
CREATE TRIGGER guest_changed AFTER UPDATE OF bytes ON guest BEGIN
    UPDATE guest_share SET bytes = bytes + new.bytes - old.bytes WHERE user = new.user;
END;
CREATE TRIGGER guest_removed AFTER DELETE ON guest BEGIN
    UPDATE guest_share SET places = places - 1, bytes = bytes - old.bytes WHERE user = old.user;
    DELETE FROM guest_share WHERE user = old.user AND places <= 0;
END;
CREATE VIEW standing AS                         -- what decides who may see or change a place; user NULL for the owner's
    SELECT place.id, perimeter, mask, guest.user, EXISTS (
        SELECT 1 FROM facet JOIN place_of_facet f ON f.facet = facet.id WHERE facet.kind = 4 AND facet.text = 'private'
        AND f.usage_count = place.usage_count AND f.last_used = place.last_used AND f.place = place.id) AS private
    FROM place LEFT JOIN guest ON guest.place = place.id;
PRAGMA user_version = 5;
)sql";

/// Every commit waits for the disk, so an acknowledged write is durable.
constexpr char CONNECTION_SETTINGS[] = R"sql(
PRAGMA journal_mode = WAL;
PRAGMA synchronous = FULL;
PRAGMA foreign_keys = ON;
PRAGMA secure_delete = ON;                  -- what was deleted is overwritten, not just forgotten
PRAGMA cache_size = -4096;                  -- kibibytes; what is not in it, the kernel mostly has
PRAGMA temp_store = MEMORY;
PRAGMA wal_autocheckpoint = 8000;           -- pages, 32 MB
)sql";

/// For a connection that writes: it uses the same pages repeatedly.
constexpr char WRITER_CACHE[] = "PRAGMA cache_size = -16384";
/// For a transaction that changes all places: writes each page to the disk once.
constexpr char LARGE_CACHE[] = "PRAGMA cache_size = -262144";

/// For a connection that only removes words of deleted names from the index.
constexpr char PURGE_SETTINGS[] = "PRAGMA secure_delete = ON; PRAGMA synchronous = FULL";
/// Each merges ?1 pages of a word index; a negative number starts a complete merge.
constexpr const char *MERGES[] = {"INSERT INTO name_index(name_index, rank) VALUES ('merge', ?1)",
                                  "INSERT INTO text_index(text_index, rank) VALUES ('merge', ?1)"};

// Disk space.
constexpr char COUNT_PAGES[] = "PRAGMA page_count";
constexpr char COUNT_FREE_PAGES[] = "PRAGMA freelist_count";
constexpr char PAGE_SIZE[] = "PRAGMA page_size";
/// Copies the write-ahead log to the database and truncates it.
constexpr char EMPTY_LOG[] = "PRAGMA wal_checkpoint(TRUNCATE)";

// Savepoints.
constexpr char SAVEPOINT[] = "SAVEPOINT part";
constexpr char ROLLBACK_TO_SAVEPOINT[] = "ROLLBACK TO part";
constexpr char RELEASE_SAVEPOINT[] = "RELEASE part";

// Places.
constexpr char INSERT_PLACE[] =
    "INSERT INTO place(name_key, sort_key, favorite, contact, room, perimeter, mask, usage_count, last_used, created,"
    " updated, latitude, longitude, facets, id)"
    " VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9, ?10, ?11, ?12, ?13, ?14, ?15)";
constexpr char UPDATE_PLACE[] =
    "UPDATE place SET name_key = ?1, sort_key = ?2, favorite = ?3, contact = ?4, room = ?5, perimeter = ?6, mask = ?7,"
    " usage_count = ?8, last_used = ?9, created = ?10, updated = ?11, latitude = ?12, longitude = ?13, facets = ?14"
    " WHERE id = ?15";
constexpr char DELETE_PLACE[] = "DELETE FROM place WHERE id = ?1";
constexpr char SELECT_ROW[] = "SELECT * FROM place WHERE id = ?1";
constexpr char SELECT_STANDING[] = "SELECT perimeter, mask, user, private FROM standing WHERE id = ?1";
constexpr char SELECT_STANDING_AND_RECORD[] =
    "SELECT perimeter, mask, user, private, full_record FROM standing JOIN record ON record.place = standing.id"
    " WHERE standing.id = ?1";
constexpr char INSERT_GUEST[] = "INSERT INTO guest(place, user, bytes) VALUES (?1, ?2, 0)";
constexpr char SET_GUEST_BYTES[] = "UPDATE guest SET bytes = ?2 WHERE place = ?1";
constexpr char SELECT_GUEST[] = "SELECT 1 FROM guest WHERE place = ?1";
constexpr char SELECT_ANY_GUEST[] = "SELECT 1 FROM guest LIMIT 1";
/// Of one user, and of all.
constexpr char SELECT_SHARES[] =
    "SELECT total(places) FILTER (WHERE user = ?1), total(bytes) FILTER (WHERE user = ?1), total(places), total(bytes)"
    " FROM guest_share";
constexpr char SELECT_RECENT_BUCKET[] = "SELECT id FROM place WHERE mask & 1";

constexpr char PUT_RECORDS[] = "INSERT OR REPLACE INTO record(place, full_record, header) VALUES (?1, ?2, ?3)";
constexpr char SELECT_FULL_RECORD[] = "SELECT full_record FROM record WHERE place = ?1";
constexpr char SELECT_HEADER[] = "SELECT header FROM record WHERE place = ?1";
constexpr char SELECT_BOTH_RECORDS[] = "SELECT full_record, header FROM record WHERE place = ?1";
constexpr char SELECT_RECORDS[] = "SELECT place, full_record, header FROM record";
constexpr char UPDATE_RECORDS[] = "UPDATE record SET full_record = ?2, header = ?3 WHERE place = ?1";
constexpr char INSERT_DICTIONARY[] = "INSERT INTO dictionary(bytes) VALUES (?1)";
constexpr char DELETE_DICTIONARY[] = "DELETE FROM dictionary";
constexpr char SELECT_DICTIONARY[] = "SELECT bytes FROM dictionary";

/// Reserves as many ids as are bound; returns the last one of each.
constexpr char TAKE_IDS[] = "UPDATE last_id SET place = place + ?1, location = location + ?2,"
                            " auxiliary = auxiliary + ?3 RETURNING place, location, auxiliary";
constexpr char SELECT_LAST_IDS[] = "SELECT place, location, auxiliary FROM last_id";
constexpr char RAISE_LAST_IDS[] =
    "UPDATE last_id SET place = max(place, ?1), location = max(location, ?2), auxiliary = max(auxiliary, ?3)";

// Search data.
constexpr char ADD_FACET[] = "INSERT INTO facet(kind, text, places) VALUES (?1, ?2, 1)"
                             " ON CONFLICT(kind, text) DO UPDATE SET places = places + 1 RETURNING id";
constexpr char RELEASE_FACET[] = "UPDATE facet SET places = places - 1 WHERE id = ?1";
constexpr char DELETE_UNUSED_FACET[] = "DELETE FROM facet WHERE id = ?1 AND places <= 0";
constexpr char SELECT_FACET[] = "SELECT id, text, places FROM facet WHERE kind = ?1 AND text = ?2";
constexpr char SELECT_FACETS[] = "SELECT id, text, places FROM facet WHERE kind = ?1 ORDER BY text";
constexpr char SELECT_TEXTS[] = "SELECT text FROM facet WHERE kind = ?1 ORDER BY text";
/// Texts of places visible to the open channel; see Store::Standing. Only of perimeter ?2 unless it is 0.
constexpr char SELECT_OPEN_TEXTS[] =
    "SELECT text FROM facet WHERE kind = ?1 AND EXISTS (SELECT 1 FROM place_of_facet f JOIN standing s ON s.id = "
    "f.place"
    " WHERE f.facet = facet.id AND s.mask & 2 AND NOT s.private AND (?2 = 0 OR s.perimeter = ?2)) ORDER BY text";
constexpr char COUNT_OF_FACET[] = "SELECT places FROM facet WHERE id = ?1";
constexpr char INSERT_PLACE_OF_FACET[] =
    "INSERT INTO place_of_facet(facet, usage_count, last_used, place) VALUES (?1, ?2, ?3, ?4)";
constexpr char DELETE_PLACE_OF_FACET[] =
    "DELETE FROM place_of_facet WHERE facet = ?1 AND usage_count = ?2 AND last_used = ?3 AND place = ?4";
constexpr char INSERT_PROPERTY[] = "INSERT OR IGNORE INTO property(key, value, place) VALUES (?1, ?2, ?3)";
constexpr char DELETE_PROPERTY[] = "DELETE FROM property WHERE key IN (SELECT id FROM facet WHERE kind = 6 AND text = "
                                   "?1) AND value = ?2 AND place = ?3";
constexpr char DELETE_PROPERTIES[] = "DELETE FROM property";
constexpr char SELECT_PLACE_IDS[] = "SELECT id FROM place";
constexpr char DELETE_PROPERTIES_OF_PLACE[] = "DELETE FROM property WHERE place = ?1";
constexpr char INSERT_ORIGIN[] =
    "INSERT OR IGNORE INTO origin(external_id, type, provider, place) VALUES (?1, ?2, ?3, ?4)";
constexpr char DELETE_ORIGIN[] =
    "DELETE FROM origin WHERE external_id = ?1 AND type = ?2 AND provider = ?3 AND place = ?4";
constexpr char DELETE_ORIGINS_OF_PLACE[] = "DELETE FROM origin WHERE place = ?1";
constexpr char INSERT_TEXT[] = "INSERT INTO text_index(rowid, text_key) VALUES (?1, ?2)";
/// The text must equal the inserted one.
constexpr char DELETE_TEXT[] = "INSERT INTO text_index(text_index, rowid, text_key) VALUES ('delete', ?1, ?2)";
constexpr char DELETE_TEXTS[] = "INSERT INTO text_index(text_index) VALUES ('delete-all')";
constexpr char SELECT_WORDS[] = "SELECT term FROM word";
constexpr char SELECT_KEY_RULES[] = "SELECT version FROM key_rules";
constexpr char DELETE_KEY_RULES[] = "DELETE FROM key_rules";
constexpr char INSERT_KEY_RULES[] = "INSERT INTO key_rules(version) VALUES (?1)";
// Only the owner's places can equal a place of a contact or provider. The last parameter is 1 for places visible to the
// open channel only.
constexpr char SELECT_BY_EXTERNAL_ID[] =
    "SELECT min(place) FROM origin JOIN standing s ON s.id = origin.place WHERE external_id = ?1 AND type = ?2"
    " AND s.user IS NULL AND (?3 = 0 OR (s.mask & 2 AND NOT s.private)) HAVING count(*) > 0";
constexpr char SELECT_BY_SOURCE[] =
    "SELECT place FROM origin JOIN standing s ON s.id = origin.place WHERE external_id = ?1 AND type = ?2 AND provider "
    "="
    " ?3 AND s.user IS NULL AND (?4 = 0 OR (s.mask & 2 AND NOT s.private)) ORDER BY place LIMIT 1";
constexpr char SELECT_ORIGINS[] =
    "SELECT provider, external_id, place FROM origin JOIN standing s ON s.id = origin.place WHERE type = ?1"
    " AND s.user IS NULL AND (?2 = 0 OR (s.mask & 2 AND NOT s.private)) ORDER BY place DESC";

// Search terms.
constexpr char REMEMBER_TERM[] = "INSERT OR REPLACE INTO search_term(term, key, used)"
                                 " VALUES (?1, ?2, 1 + (SELECT ifnull(max(used), 0) FROM search_term))";
constexpr char SELECT_TERMS[] = "SELECT term, key FROM search_term ORDER BY used DESC";
constexpr char DELETE_OLD_TERMS[] =
    "DELETE FROM search_term WHERE term NOT IN (SELECT term FROM search_term ORDER BY used DESC LIMIT ?1)";

// Checks.
/// All objects of a schema, without SQLite's own, which depend on its version.
constexpr char COUNT_TABLES[] = "SELECT count(*) FROM sqlite_master";
constexpr char SELECT_TABLES[] =
    "SELECT type || ' ' || name || ' ' || tbl_name || ' ' || ifnull(sql, '') FROM sqlite_master"
    " WHERE NOT (type = 'index' AND name LIKE 'sqlite#_autoindex#_%' ESCAPE '#' AND sql IS NULL) ORDER BY 1";
/// Fails when the name index does not match the places.
constexpr char CHECK_NAME_INDEX[] = "INSERT INTO name_index(name_index, rank) VALUES ('integrity-check', 1)";
constexpr char CHECK_TEXT_INDEX[] = "INSERT INTO text_index(text_index) VALUES ('integrity-check')";
/// These return 1 for a problem.
constexpr char IS_POSITION_WRONG[] = "SELECT rtreecheck('position') <> 'ok'";
constexpr char IS_RECORD_MISSING[] = "SELECT EXISTS (SELECT 1 FROM place WHERE id NOT IN (SELECT place FROM record))"
                                     " OR EXISTS (SELECT 1 FROM record WHERE place NOT IN (SELECT id FROM place))";
constexpr char IS_FACET_WRONG[] = "SELECT EXISTS (SELECT 1 FROM facet WHERE id < 1"
                                  " OR places NOT BETWEEN 1 AND (SELECT count(*) FROM place))";
constexpr char IS_GUEST_WRONG[] =
    "SELECT EXISTS (SELECT 1 FROM guest WHERE bytes < 0 OR place NOT IN (SELECT id FROM place))"
    " OR EXISTS (SELECT * FROM guest_share EXCEPT SELECT user, count(*), sum(bytes) FROM guest GROUP BY user)"
    " OR EXISTS (SELECT user FROM guest EXCEPT SELECT user FROM guest_share)";
/// Ids from 2^62 on are reserved for candidates; ids of stored places are at most the last assigned one.
constexpr char IS_ID_WRONG[] = "SELECT EXISTS (SELECT 1 FROM place WHERE id < 1 OR id > (SELECT place FROM last_id))"
                               " OR EXISTS (SELECT 1 FROM last_id WHERE max(place, location, auxiliary) >= 1 << 61"
                               " OR min(place, location, auxiliary) < 0)";
constexpr char IS_DICTIONARY_WRONG[] = "SELECT count(*) <> 1 FROM dictionary";
constexpr char IS_LAST_ID_WRONG[] = "SELECT count(*) <> 1 FROM last_id";
/// Problems of all pages, or of the pages of a table and its indexes. One row, "ok", without a problem.
constexpr char CHECK_PAGES[] = "SELECT integrity_check FROM pragma_integrity_check";
constexpr char CHECK_PAGES_OF_TABLE[] = "SELECT integrity_check FROM pragma_integrity_check(?1)";
constexpr char SELECT_TABLE_NAMES[] = "SELECT name FROM sqlite_master WHERE type = 'table' AND rootpage > 0";
constexpr char SELECT_NAME_KEY[] = "SELECT name_key FROM place WHERE id = ?1";

} // namespace placesd::sql
