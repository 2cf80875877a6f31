// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

/// All SQL statements of finds. Statements for places select all columns of the table `place`. Each can be pasted into
/// the sqlite3 shell.
namespace placesd::find_sql
{

// In an order; ties by id in the same direction.
constexpr char BY_ID[] = "SELECT * FROM place ORDER BY id";
constexpr char BY_ID_DOWN[] = "SELECT * FROM place ORDER BY id DESC";
constexpr char BY_RELEVANCE[] =
    "SELECT id, name_key FROM place INDEXED BY place_by_relevance ORDER BY usage_count, last_used, id";
constexpr char BY_RELEVANCE_DOWN[] =
    "SELECT id, name_key FROM place INDEXED BY place_by_relevance ORDER BY usage_count DESC, last_used DESC, id DESC";
constexpr char BY_NAME[] = "SELECT id, name_key FROM place INDEXED BY place_by_name ORDER BY sort_key, id";
constexpr char BY_NAME_DOWN[] =
    "SELECT id, name_key FROM place INDEXED BY place_by_name ORDER BY sort_key DESC, id DESC";
constexpr char BY_USE[] = "SELECT * FROM place INDEXED BY place_by_use ORDER BY last_used, id";
constexpr char BY_USE_DOWN[] = "SELECT * FROM place INDEXED BY place_by_use ORDER BY last_used DESC, id DESC";
constexpr char BY_CREATION[] = "SELECT * FROM place INDEXED BY place_by_creation ORDER BY created, id";
constexpr char BY_CREATION_DOWN[] = "SELECT * FROM place INDEXED BY place_by_creation ORDER BY created DESC, id DESC";
constexpr char BY_UPDATE[] = "SELECT * FROM place INDEXED BY place_by_update ORDER BY updated, id";
constexpr char BY_UPDATE_DOWN[] = "SELECT * FROM place INDEXED BY place_by_update ORDER BY updated DESC, id DESC";
constexpr char BY_COUNT[] = "SELECT * FROM place INDEXED BY place_by_count ORDER BY usage_count, id";
constexpr char BY_COUNT_DOWN[] = "SELECT * FROM place INDEXED BY place_by_count ORDER BY usage_count DESC, id DESC";
/// A node of the R*Tree of the positions.
constexpr char SELECT_NODE[] = "SELECT data FROM position_node WHERE nodeno = ?1";
/// The places without a position.
constexpr char NOWHERE[] = "SELECT * FROM place INDEXED BY place_nowhere WHERE latitude IS NULL ORDER BY id";
constexpr char NOWHERE_DOWN[] = "SELECT * FROM place INDEXED BY place_nowhere WHERE latitude IS NULL ORDER BY id DESC";

// From the index of a condition. Statements with a final ?LIMIT parameter count up to it only.
constexpr char WITH_WORDS[] = "SELECT place.* FROM name_index CROSS JOIN place ON place.id = name_index.rowid"
                              " WHERE name_index MATCH ?1";
constexpr char COUNT_SOME_WITH_WORDS[] =
    "SELECT count(*) FROM (SELECT 1 FROM name_index WHERE name_index MATCH ?1 LIMIT ?2)";
constexpr char SOME_WITH_WORDS[] = "SELECT rowid FROM name_index WHERE name_index MATCH ?1 LIMIT ?2";
constexpr char IN_TEXTS[] = "SELECT place.* FROM text_index CROSS JOIN place ON place.id = text_index.rowid"
                            " WHERE text_index MATCH ?1";
constexpr char SOME_IN_TEXTS[] = "SELECT rowid FROM text_index WHERE text_index MATCH ?1 LIMIT ?2";
constexpr char COUNT_SOME_IN_TEXTS[] =
    "SELECT count(*) FROM (SELECT 1 FROM text_index WHERE text_index MATCH ?1 LIMIT ?2)";
/// By name key, from ?1 (inclusive) to ?2 (exclusive).
constexpr char OF_NAMES[] = "SELECT * FROM place INDEXED BY place_by_key WHERE name_key >= ?1 AND name_key < ?2";
constexpr char COUNT_SOME_OF_NAMES[] = "SELECT count(*) FROM (SELECT 1 FROM place INDEXED BY place_by_key WHERE "
                                       "name_key >= ?1 AND name_key < ?2 LIMIT ?3)";
constexpr char OF_FACET[] = "SELECT place.* FROM place_of_facet f CROSS JOIN place ON place.id = f.place"
                            " WHERE f.facet = ?1 ORDER BY f.usage_count, f.last_used, f.place";
constexpr char OF_FACET_DOWN[] = "SELECT place.* FROM place_of_facet f CROSS JOIN place ON place.id = f.place"
                                 " WHERE f.facet = ?1 ORDER BY f.usage_count DESC, f.last_used DESC, f.place DESC";
/// By last use, from ?1 to ?2, both inclusive.
constexpr char USED_BETWEEN[] = "SELECT * FROM place INDEXED BY place_by_use WHERE last_used BETWEEN ?1 AND ?2"
                                " ORDER BY last_used, id";
constexpr char USED_BETWEEN_DOWN[] = "SELECT * FROM place INDEXED BY place_by_use WHERE last_used BETWEEN ?1 AND ?2"
                                     " ORDER BY last_used DESC, id DESC";
constexpr char COUNT_SOME_USED_BETWEEN[] = "SELECT count(*) FROM (SELECT 1 FROM place INDEXED BY place_by_use"
                                           " WHERE last_used BETWEEN ?1 AND ?2 LIMIT ?3)";
constexpr char IN_BUCKET[] =
    "SELECT id, name_key FROM place INDEXED BY bucket_by_use WHERE mask & 1 ORDER BY last_used, id";
constexpr char IN_BUCKET_DOWN[] =
    "SELECT id, name_key FROM place INDEXED BY bucket_by_use WHERE mask & 1 ORDER BY last_used DESC, id DESC";
constexpr char FAVORITES[] =
    "SELECT id, name_key FROM place INDEXED BY favorite_by_name WHERE favorite ORDER BY sort_key, id";
constexpr char FAVORITES_DOWN[] =
    "SELECT id, name_key FROM place INDEXED BY favorite_by_name WHERE favorite ORDER BY sort_key DESC, id DESC";
constexpr char CONTACTS[] =
    "SELECT id, name_key FROM place INDEXED BY contact_by_name WHERE contact ORDER BY sort_key, id";
constexpr char CONTACTS_DOWN[] =
    "SELECT id, name_key FROM place INDEXED BY contact_by_name WHERE contact ORDER BY sort_key DESC, id DESC";
constexpr char ROOMS[] = "SELECT id, name_key FROM place INDEXED BY room_by_name WHERE room ORDER BY sort_key, id";
constexpr char ROOMS_DOWN[] =
    "SELECT id, name_key FROM place INDEXED BY room_by_name WHERE room ORDER BY sort_key DESC, id DESC";
/// Places that have a property with key ?1 and an indexed value from ?2 (inclusive) to ?3 (exclusive).
constexpr char WITH_PROPERTY[] = "SELECT place.* FROM property CROSS JOIN place ON place.id = property.place"
                                 " WHERE property.key = ?1 AND property.value >= ?2 AND property.value < ?3";
constexpr char COUNT_SOME_WITH_PROPERTY[] =
    "SELECT count(*) FROM (SELECT 1 FROM property WHERE key = ?1 AND value >= ?2 AND value < ?3 LIMIT ?4)";

} // namespace placesd::find_sql
