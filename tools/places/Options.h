// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/Coordinates.h>

#include <CLI/CLI.hpp>

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <string>
#include <vector>

/// Options that several commands have.
namespace tool
{

/// The text of an argument, or of several arguments.
QString text(const std::string &argument);
QStringList texts(const std::vector<std::string> &arguments);
/// Words given as separate arguments, joined with blanks.
QString joined(const std::vector<std::string> &words);

/// The coordinates in "LATITUDE,LONGITUDE", in degrees; invalid when the text has another form.
vela::platform::places::Coordinates parsePosition(const std::string &position);

// Validators; an argument of another kind is wrong use. Use them with transform(): it replaces a number with its plain
// decimal form, because CLI11 reads "010" as octal.
extern const CLI::Validator IsPosition;
/// The number of a place: from 0 on.
extern const CLI::Validator IsId;
/// The number of a place, or a link.
extern const CLI::Validator IsIdOrLink;
/// A number of results: from 0 to the largest int.
extern const CLI::Validator IsCount;
/// A text that is not blank.
extern const CLI::Validator IsName;

/// The requested part of the results.
struct Page
{
    int offset = 0;
    int limit = 20;
};

void addLimitOption(CLI::App &command, Page &page);
void addPageOptions(CLI::App &command, Page &page);

/// Adds an option that may be given several times, with one value each time, so that it does not take the next
/// argument.
CLI::Option *addListOption(CLI::App &command, const char *name, std::vector<std::string> &values,
                           const char *description);

} // namespace tool
