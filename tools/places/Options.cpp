// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "Options.h"

#include "PlaceLink.h"

#include <limits>

namespace tool
{

using vela::platform::places::Coordinates;

namespace
{

/// Puts a whole number from 0 to `largest` into its plain form. False when the argument is none.
bool normalize(std::string &argument, qint64 largest)
{
    bool isNumber = false;
    const qint64 number = text(argument).toLongLong(&isNumber);
    if (!isNumber || number < 0 || number > largest)
        return false;
    argument = std::to_string(number);
    return true;
}

std::string refusal(bool isAccepted, const char *problem, const std::string &argument)
{
    return isAccepted ? std::string() : problem + (": " + argument);
}

} // namespace

QString text(const std::string &argument)
{
    return QString::fromLocal8Bit(argument.data(), static_cast<int>(argument.size()));
}

QStringList texts(const std::vector<std::string> &arguments)
{
    QStringList converted;
    for (const std::string &argument : arguments)
        converted.append(text(argument));
    return converted;
}

QString joined(const std::vector<std::string> &words)
{
    return texts(words).join(QLatin1Char(' '));
}

Coordinates parsePosition(const std::string &position)
{
    const QStringList parts = text(position).split(QLatin1Char(','));
    bool isLatitude = false;
    bool isLongitude = false;
    if (parts.size() != 2)
        return {};
    const Coordinates coordinates(parts[0].trimmed().toDouble(&isLatitude), parts[1].trimmed().toDouble(&isLongitude));
    return isLatitude && isLongitude ? coordinates : Coordinates();
}

const CLI::Validator IsPosition(
    [](const std::string &argument) {
        return refusal(parsePosition(argument).isValid(), "not a position in degrees, such as 47.24,8.72", argument);
    },
    "LATITUDE,LONGITUDE");

const CLI::Validator IsId(
    [](std::string &argument) {
        return refusal(normalize(argument, std::numeric_limits<qint64>::max()), "not the number of a place", argument);
    },
    "NUMBER");

const CLI::Validator IsIdOrLink(
    [](std::string &argument) {
        const bool isEither = isLink(text(argument)) || normalize(argument, std::numeric_limits<qint64>::max());
        return refusal(isEither, "neither a number nor a link", argument);
    },
    "NUMBER|LINK");

const CLI::Validator IsCount(
    [](std::string &argument) {
        return refusal(normalize(argument, std::numeric_limits<int>::max()), "not a whole number from 0 to 2147483647",
                       argument);
    },
    "COUNT");

const CLI::Validator IsName(
    [](const std::string &argument) {
        return refusal(!text(argument).trimmed().isEmpty(), "a name has to be more than blanks", argument);
    },
    "NAME");

const CLI::Validator IsAssignment(
    [](const std::string &argument) {
        const std::size_t sign = argument.rfind('=');
        const bool isAssignment = sign != std::string::npos && sign > 0 && sign + 1 < argument.size();
        return refusal(isAssignment, "not a heading and a property, such as Place=name", argument);
    },
    "HEADING=PROPERTY");

void addLimitOption(CLI::App &command, Page &page)
{
    command.add_option("--limit", page.limit, "Largest number of results")->transform(IsCount)->capture_default_str();
}

void addPageOptions(CLI::App &command, Page &page)
{
    command.add_option("--offset", page.offset, "Number of results to pass over")->transform(IsCount);
    addLimitOption(command, page);
}

CLI::Option *addListOption(CLI::App &command, const char *name, std::vector<std::string> &values,
                           const char *description)
{
    return command.add_option(name, values, description)->allow_extra_args(false);
}

} // namespace tool
