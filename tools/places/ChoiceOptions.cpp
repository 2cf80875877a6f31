// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "ChoiceOptions.h"

#include "Centre.h"
#include "Options.h"

#include <QtCore/QDateTime>

namespace tool
{

namespace
{

/// Parses a date or time in ISO 8601, in local time unless it has a time zone. Returns seconds since
/// 1970-01-01T00:00:00 UTC; 0 for any other text.
quint64 parseTime(const QString &text)
{
    const QDateTime time = QDateTime::fromString(text, Qt::ISODate);
    return time.isValid() && time.toSecsSinceEpoch() > 0 ? static_cast<quint64>(time.toSecsSinceEpoch()) : 0;
}

CLI::Validator isBox()
{
    const auto problem = [](const std::string &argument) {
        return GeoBox::parse(text(argument)) ? std::string()
                                             : "not a part of the Earth in degrees, such as 46,7,47,8: " + argument;
    };
    return {problem, "SOUTH,WEST,NORTH,EAST"};
}

CLI::Validator isTime()
{
    const auto problem = [](const std::string &argument) {
        return parseTime(text(argument)) > 0
                   ? std::string()
                   : "not a date or time, such as 2026-01-31 or 2026-01-31T12:00:00Z: " + argument;
    };
    return {problem, "DATE"};
}

/// The words that are numbers of places.
std::vector<qint64> numbersOf(const std::vector<std::string> &words)
{
    std::vector<qint64> numbers;
    for (const std::string &word : words) {
        std::string number = word;
        if (IsId(number).empty())
            numbers.push_back(text(number).toLongLong());
    }
    return numbers;
}

} // namespace

void ChoiceOptions::addTo(CLI::App &command)
{
    addListOption(command, "--tag", m_tags, "Places with this tag; with several --tag, places with any of them");
    command.add_option("--within", m_box, "Places inside this box, in degrees")->transform(isBox());
    command.add_option("--near", position, "Nearest to this position or stored place first")->transform(IsCentre);
    addRadiusOption(command);
    m_ownerOption = command.add_option("--owner", m_owner, "Places that this application added");
    command.add_option("--since", m_since, "Places stored or changed since this time")->transform(isTime());
}

void ChoiceOptions::addRadiusOption(CLI::App &command)
{
    command.add_option("--radius", m_radius, "Only places within this distance, such as 500m or 2km")
        ->transform(IsLength);
}

ExitStatus ChoiceOptions::read(const char *command, PlaceChoice &choice, bool areNumbersPlaces) const
{
    if (areNumbersPlaces)
        choice.ids = numbersOf(words);
    if (choice.ids.empty())
        choice.words = joined(words).trimmed();
    choice.tags = texts(m_tags);
    if (m_ownerOption && m_ownerOption->count() > 0)
        choice.owner = text(m_owner);
    choice.box = GeoBox::parse(text(m_box));
    choice.radius = m_radius ? parseLength(*m_radius) : std::nullopt;
    choice.since = parseTime(text(m_since));
    if (const QString problem = problemOf(choice); !problem.isEmpty())
        return misuse(command, problem);
    return position.empty() ? Done : findCentre(text(position), choice.centre);
}

QString ChoiceOptions::problemOf(const PlaceChoice &choice) const
{
    if (!choice.ids.empty() && choice.ids.size() < words.size())
        return QStringLiteral(
            "both numbers and words are given; give the numbers of places or the words of a name, and put words that "
            "begin with a number in quotation marks");
    if (!choice.ids.empty() && (choice.hasConditions() || !position.empty()))
        return QStringLiteral("both numbers and conditions are given; give only one of them");
    if (choice.radius && position.empty())
        return QStringLiteral("--radius needs a position (--near)");
    return {};
}

} // namespace tool
