// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

/// SQL statements for PostgreSQL.
namespace bench::sql
{

constexpr char TABLES[] = R"sql(
CREATE TABLE place(
    id int PRIMARY KEY, name text, owner text, mask int, usage_count int, last_used bigint, created bigint,
    updated bigint, latitude float8, longitude float8, feature text,
    words tsvector GENERATED ALWAYS AS (to_tsvector('simple', name)) STORED);
CREATE TABLE tag(tag text, place int, PRIMARY KEY(tag, place));
)sql";
constexpr char POSITION_ON_EARTH[] = R"sql(
CREATE EXTENSION postgis;
ALTER TABLE place ADD position geography GENERATED ALWAYS AS
    (ST_SetSRID(ST_MakePoint(longitude, latitude), 4326)::geography) STORED;
)sql";
constexpr char POSITION_IN_PLANE[] = R"sql(
ALTER TABLE place ADD position point GENERATED ALWAYS AS (point(longitude, latitude)) STORED;
)sql";
constexpr char INDEXES[] = R"sql(
CREATE INDEX ON place(usage_count DESC, last_used DESC, id DESC);
CREATE INDEX ON place(last_used DESC, id DESC);
CREATE INDEX ON place(last_used DESC, id DESC) WHERE mask & 1 = 1;
CREATE INDEX ON place(lower(name), id);
CREATE INDEX ON place(created);
CREATE INDEX ON place(updated);
CREATE INDEX ON place(owner);
CREATE INDEX ON place USING gin(words);
CREATE INDEX ON place USING gist(position);
VACUUM ANALYZE;
)sql";

/// A query by the name of its row, with `:centre` for a position and `:id` for a place.
struct Statement
{
    const char *question;
    const char *text;
};

constexpr Statement STATEMENTS[] = {
    {"fetch by id", "SELECT feature FROM place WHERE id = :id"},
    {"all by distance, nearest first", "SELECT feature FROM place ORDER BY position <-> :centre LIMIT 20"},
    {"all by distance, farthest first", "SELECT feature FROM place ORDER BY position <-> :centre DESC LIMIT 20"},
    {"recent: last use, newest first", "SELECT feature FROM place ORDER BY last_used DESC, id DESC LIMIT 20"},
    {"all by relevance", "SELECT feature FROM place ORDER BY usage_count DESC, last_used DESC, id DESC LIMIT 20"},
    {"all by name", "SELECT feature FROM place ORDER BY lower(name), id LIMIT 20"},
    {"all by creation, newest first", "SELECT feature FROM place ORDER BY created DESC LIMIT 20"},
    {"all by update, newest first", "SELECT feature FROM place ORDER BY updated DESC LIMIT 20"},
    {"all by usage count", "SELECT feature FROM place ORDER BY usage_count DESC LIMIT 20"},
    {"tags in use", "SELECT DISTINCT tag FROM tag ORDER BY tag"},
    {"equivalent places",
     "SELECT feature FROM place WHERE lower(name) = (SELECT lower(name) FROM place WHERE id = :id)"},
    {"\"san\" by relevance", "SELECT feature FROM place WHERE words @@ 'san:*'::tsquery ORDER BY usage_count DESC, "
                             "last_used DESC, id DESC LIMIT 20"},
    {"\"san\" by name", "SELECT feature FROM place WHERE words @@ 'san:*'::tsquery ORDER BY lower(name), id LIMIT 20"},
    {"\"san\" by distance",
     "SELECT feature FROM place WHERE words @@ 'san:*'::tsquery ORDER BY position <-> :centre LIMIT 20"},
    {"\"s\" by relevance", "SELECT feature FROM place WHERE words @@ 's:*'::tsquery ORDER BY usage_count DESC, "
                           "last_used DESC, id DESC LIMIT 20"},
    {"\"s\" by name", "SELECT feature FROM place WHERE words @@ 's:*'::tsquery ORDER BY lower(name), id LIMIT 20"},
    {"\"s\" by distance",
     "SELECT feature FROM place WHERE words @@ 's:*'::tsquery ORDER BY position <-> :centre LIMIT 20"},
    {"size of \"san\"", "SELECT count(*) FROM place WHERE words @@ 'san:*'::tsquery"},
    {"group 4 without a term", "SELECT feature FROM place WHERE id IN (SELECT place FROM tag WHERE tag = "
                               "'lbs-favorite') ORDER BY lower(name), id LIMIT 20"},
    {"group 4 \"san\"", "SELECT feature FROM place WHERE words @@ 'san:*'::tsquery AND id IN (SELECT place FROM tag "
                        "WHERE tag = 'lbs-favorite') ORDER BY lower(name), id LIMIT 20"},
    {"group 5 without a term",
     "SELECT feature FROM place WHERE mask & 1 = 1 ORDER BY last_used DESC, id DESC LIMIT 20"},
    {"group 5 \"san\"", "SELECT feature FROM place WHERE words @@ 'san:*'::tsquery AND mask & 1 = 1 ORDER BY last_used "
                        "DESC, id DESC LIMIT 20"},
    {"owner, frequent", "SELECT feature FROM place WHERE owner = 'org.example.maps' ORDER BY usage_count DESC, "
                        "last_used DESC, id DESC LIMIT 20"},
    {"owner, middle", "SELECT feature FROM place WHERE owner = 'org.example.travel' ORDER BY usage_count DESC, "
                      "last_used DESC, id DESC LIMIT 20"},
    {"owner, rare", "SELECT feature FROM place WHERE owner = 'org.example.collector' ORDER BY usage_count DESC, "
                    "last_used DESC, id DESC LIMIT 20"},
    {"tag, frequent", "SELECT feature FROM place WHERE id IN (SELECT place FROM tag WHERE tag = 'holiday') ORDER BY "
                      "usage_count DESC, last_used DESC, id DESC LIMIT 20"},
    {"tag, middle", "SELECT feature FROM place WHERE id IN (SELECT place FROM tag WHERE tag = 'work') ORDER BY "
                    "usage_count DESC, last_used DESC, id DESC LIMIT 20"},
    {"tag, rare", "SELECT feature FROM place WHERE id IN (SELECT place FROM tag WHERE tag = 'treasure') ORDER BY "
                  "usage_count DESC, last_used DESC, id DESC LIMIT 20"},
    {"all by name, from 2,000 on", "SELECT feature FROM place ORDER BY lower(name), id LIMIT 20 OFFSET 2000"},
    {"all by relevance, from 2,000 on",
     "SELECT feature FROM place ORDER BY usage_count DESC, last_used DESC, id DESC LIMIT 20 OFFSET 2000"},
    {"\"san\" by relevance, from 2,000 on", "SELECT feature FROM place WHERE words @@ 'san:*'::tsquery ORDER BY "
                                            "usage_count DESC, last_used DESC, id DESC LIMIT 20 OFFSET 2000"},
    {"add a place and fetch it back",
     "INSERT INTO place(id, name, feature, usage_count, last_used, latitude, longitude) SELECT (SELECT max(id) + 1 "
     "FROM place), name, feature, 0, 0, latitude, longitude FROM place WHERE id = :id"},
    {"update a place", "UPDATE place SET feature = feature || ' ' WHERE id = :id"},
    {"use a place", "UPDATE place SET usage_count = usage_count + 1, last_used = last_used + 1 WHERE id = :id"},
};

} // namespace bench::sql
