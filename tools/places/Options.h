// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "PlaceTemplate.h"

#include <places/Coordinates.h>

#include <CLI/CLI.hpp>

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <optional>
#include <string>
#include <vector>

/// Options that several commands share.
namespace tool
{

/// The text of an argument, or of several arguments.
QString text(const std::string &argument);
QStringList texts(const std::vector<std::string> &arguments);
/// Words given as separate arguments, joined with blanks.
QString joined(const std::vector<std::string> &words);

/// The coordinates in a text, in any form of readAnyPosition(); invalid for any other text.
vela::platform::places::Coordinates parsePosition(const std::string &position);
/// Why an argument is not a position, for people; empty when it is one.
std::string positionProblem(const std::string &argument);
/// Converts a length such as "500m", "500" or "2km" to metres; std::nullopt for any other text.
std::optional<double> parseLength(const std::string &length);

// Validators; any other argument is wrong use. Use them with transform(): it replaces a number with its plain decimal
// form, because CLI11 reads "010" as octal.
extern const CLI::Validator IsPosition;
/// The id of a place, 0 or greater.
extern const CLI::Validator IsId;
/// A position, or the id or name of a place. Refuses only invalid positions in a known form.
extern const CLI::Validator IsCentre;
/// The id of a place, a position or a link.
extern const CLI::Validator IsIdOrPosition;
/// A length in metres or kilometres.
extern const CLI::Validator IsLength;
/// A number of results: from 0 to the largest int.
extern const CLI::Validator IsCount;
/// The number of a result: from 1 on.
extern const CLI::Validator IsResult;
/// A text that is not blank.
extern const CLI::Validator IsName;
/// The rows of a list, as PlaceTemplate parses them.
extern const CLI::Validator IsTemplate;
/// Two texts separated by the last "=", neither of them empty.
extern const CLI::Validator IsAssignment;

/// The requested part of the results.
struct Page
{
    int offset = 0;
    int limit = 20;
};

void addLimitOption(CLI::App &command, Page &page);
void addPageOptions(CLI::App &command, Page &page);

/// Adds the option `--format` for the rows of a list of places; the main command has `--json`.
void addRowOption(CLI::App &command, std::string &format);
/// The rows of this option; nothing when it is not given.
std::optional<PlaceTemplate> rowOf(const std::string &format);

/// Adds an option that may be given several times. Each takes one value, not the next argument.
CLI::Option *addListOption(CLI::App &command, const char *name, std::vector<std::string> &values,
                           const char *description);

} // namespace tool
