// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "Options.h"

#include "PlaceLink.h"

#include <QtCore/QRegularExpression>

#include <limits>

namespace tool
{

using vela::platform::places::Coordinates;

namespace
{

/// Normalizes a whole number from `smallest` to `largest`. False when the argument is not one.
bool normalize(std::string &argument, qint64 largest, qint64 smallest = 0)
{
    bool isNumber = false;
    const qint64 number = text(argument).toLongLong(&isNumber);
    if (!isNumber || number < smallest || number > largest)
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
    return readAnyPosition(text(position)).position;
}

std::optional<double> parseLength(const std::string &length)
{
    static const QRegularExpression LENGTH(QStringLiteral(R"(\A([0-9]+(?:\.[0-9]+)?)\s*(m|km)?\z)"),
                                           QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch match = LENGTH.match(text(length));
    if (!match.hasMatch())
        return std::nullopt;
    return match.captured(1).toDouble() * (match.captured(2).size() == 2 ? 1000 : 1);
}

std::string positionProblem(const std::string &argument)
{
    const formats::ReadPosition read = readAnyPosition(text(argument));
    if (read.position.isValid())
        return {};
    const QString why = read.problem.isEmpty() ? unknownForm() : read.problem;
    return "not a position: " + argument + ": " + why.toStdString();
}

const CLI::Validator IsPosition([](const std::string &argument) { return positionProblem(argument); }, "POSITION");

const CLI::Validator IsId(
    [](std::string &argument) {
        return refusal(normalize(argument, std::numeric_limits<qint64>::max()), "not the number of a place", argument);
    },
    "NUMBER");

const CLI::Validator IsCentre(
    [](const std::string &argument) {
        const bool isWrong = !readAnyPosition(text(argument)).problem.isEmpty();
        return isWrong ? positionProblem(argument) : std::string();
    },
    "POSITION|NUMBER|NAME");

const CLI::Validator IsIdOrPosition(
    [](std::string &argument) {
        const bool isEither = isLink(text(argument)) || normalize(argument, std::numeric_limits<qint64>::max());
        return isEither ? std::string() : positionProblem(argument);
    },
    "NUMBER|POSITION|LINK");

const CLI::Validator IsLength(
    [](const std::string &argument) {
        return refusal(parseLength(argument).has_value(), "not a length, such as 500m or 2km", argument);
    },
    "LENGTH");

const CLI::Validator IsCount(
    [](std::string &argument) {
        return refusal(normalize(argument, std::numeric_limits<int>::max()), "not a whole number from 0 to 2147483647",
                       argument);
    },
    "COUNT");

const CLI::Validator IsResult(
    [](std::string &argument) {
        return refusal(normalize(argument, std::numeric_limits<int>::max(), 1), "not the number of a result, from 1 on",
                       argument);
    },
    "RESULT");

const CLI::Validator IsName(
    [](const std::string &argument) {
        return refusal(!text(argument).trimmed().isEmpty(), "a name needs more than blanks", argument);
    },
    "NAME");

const CLI::Validator IsTemplate(
    [](const std::string &argument) {
        PlaceTemplate row;
        return PlaceTemplate::parse(text(argument), row).toStdString();
    },
    "ROW");

const CLI::Validator IsAssignment(
    [](const std::string &argument) {
        const std::size_t sign = argument.rfind('=');
        const bool isAssignment = sign != std::string::npos && sign > 0 && sign + 1 < argument.size();
        return refusal(isAssignment, "not a heading and a property, such as Place=name", argument);
    },
    "HEADING=PROPERTY");

void addLimitOption(CLI::App &command, Page &page)
{
    command.add_option("--limit", page.limit, "Maximum number of results")->transform(IsCount)->capture_default_str();
}

void addPageOptions(CLI::App &command, Page &page)
{
    command.add_option("--offset", page.offset, "Number of results to skip")->transform(IsCount);
    addLimitOption(command, page);
}

void addRowOption(CLI::App &command, std::string &format)
{
    command.add_option("--format", format, R"(Rows of this form, such as '{id}\t{name}\t{latitude}\t{longitude}')")
        ->check(IsTemplate);
    // The help of excludes() would name --format in the list of --json once for each command.
    const CLI::Option *json = command.get_parent()->get_option("--json");
    command.parse_complete_callback([&format, json] {
        if (!format.empty() && json->count() > 0)
            throw CLI::ExcludesError("--json", "--format");
    });
}

std::optional<PlaceTemplate> rowOf(const std::string &format)
{
    PlaceTemplate row;
    const bool isGiven = !format.empty() && PlaceTemplate::parse(text(format), row).isEmpty();
    return isGiven ? std::make_optional(row) : std::nullopt;
}

CLI::Option *addListOption(CLI::App &command, const char *name, std::vector<std::string> &values,
                           const char *description)
{
    return command.add_option(name, values, description)->allow_extra_args(false);
}

} // namespace tool
