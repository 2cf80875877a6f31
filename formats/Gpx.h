// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Vocabulary.h"

/// Names that the GPX reader and writer share.
namespace formats::gpx
{

/// Namespace of our extensions and its prefix. The elements are named after properties.
constexpr char EXTENSION[] = "https://places.example/xmlns/properties/1";
constexpr char PREFIX[] = "places";

/// A child of a waypoint and its property.
struct Child
{
    const char *element;
    const char *property;
    const char *pattern; ///< Texts that the schema accepts; null for any text.
};

constexpr char DECIMAL[] = R"(-?\d+(\.\d+)?)";

/// Children in the order of the schema.
constexpr Child CHILDREN[] = {
    {"time", "time", R"(\d{4}-\d\d-\d\dT([01]\d|2[0-3]):[0-5]\d:[0-5]\d(\.\d+)?(Z|[+-](0\d|1[0-3]):[0-5]\d)?)"},
    {"magvar", "magvar", R"((\d|[1-9]\d|[12]\d\d|3[0-5]\d)(\.\d+)?)"},
    {"name", vocabulary::NAME, nullptr},
    {"cmt", "cmt", nullptr},
    {"desc", vocabulary::DESCRIPTION, nullptr},
    {"src", "src", nullptr},
    {"link", vocabulary::URL, R"([A-Za-z][A-Za-z0-9+.-]*:[A-Za-z0-9._~:/?#@!$&'()*+,;=%-]*)"}, // in the attribute href
    {"sym", "sym", nullptr},
    {"type", "kind", nullptr},
    {"fix", "fix", "none|2d|3d|dgps|pps"},
    {"sat", "sat", R"(\d{1,9})"},
    {"hdop", "hdop", DECIMAL},
    {"vdop", "vdop", DECIMAL},
    {"pdop", "pdop", DECIMAL},
    {"ageofdgpsdata", "ageofdgpsdata", DECIMAL},
    {"dgpsid", "dgpsid", R"(\d{1,3}|10[01]\d|102[0-3])"},
};

} // namespace formats::gpx
