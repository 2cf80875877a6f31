// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/Coordinates.h>

#include <CLI/CLI.hpp>

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <string>
#include <vector>

/// What the arguments of several commands have in common.
namespace tool
{

/// The text of an argument, and the texts of several.
QString text(const std::string &argument);
QStringList texts(const std::vector<std::string> &arguments);
/// Words that were given one by one, as one text.
QString joined(const std::vector<std::string> &words);

/// The coordinates in a text "LATITUDE,LONGITUDE", in degrees; invalid when it is none.
vela::platform::places::Coordinates parsePosition(const std::string &position);

// These refuse, as wrong use, what is not of their kind. To be used with transform(): numbers come out in the plain
// decimal form that they are read in, whatever else CLI11 would make of "010".
extern const CLI::Validator IsPosition;
/// The number of a place: from 0 on.
extern const CLI::Validator IsId;
/// The number of a place, or a link.
extern const CLI::Validator IsIdOrLink;
/// A number of results: from 0 to the largest int.
extern const CLI::Validator IsCount;
/// A text that is not empty and not only of blanks.
extern const CLI::Validator IsName;
/// Two texts that are not empty, apart by the last "=".
extern const CLI::Validator IsAssignment;

/// Which of the results are wanted.
struct Page
{
    int offset = 0;
    int limit = 20;
};

void addLimitOption(CLI::App &command, Page &page);
void addPageOptions(CLI::App &command, Page &page);

/// Adds an option that may be given several times, each time with one value, so that what follows it is not taken too.
CLI::Option *addListOption(CLI::App &command, const char *name, std::vector<std::string> &values,
                           const char *description);

} // namespace tool
