// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "PlaceRows.h"

#include "TerminalText.h"

#include <places/Place.h>
#include <places/PlaceHeader.h>
#include <places/Utilities.h>

#include <QtCore/QRegularExpression>
#include <QtCore/QtMath>
#include <QtCore/QVector>

#include <algorithm>
#include <cmath>
#include <iterator>

namespace tool
{

using namespace formats;
using namespace vela::platform::places;

namespace
{

constexpr int ID_WIDTH = 7;
constexpr int NUMBER_WIDTH = 3;
/// Preferred width of the names, in columns.
constexpr int NAME_WIDTH = 40;
/// Minimum width of the addresses, in columns, as long as it is at most half of the row.
constexpr int WHERE_WIDTH = 14;
/// Minimum width of names and addresses together beside positions, in columns.
constexpr int LEAST_BESIDE_POSITION = 40;
/// A longer description is not shown as a name.
constexpr int LONGEST_OTHER_NAME = 40;
const QString SEPARATOR = QStringLiteral(", ");

struct Row
{
    QString lead;
    QString name;
    QStringList where; ///< Parts of the address, the largest last.
    QString point;     ///< Distance and direction from the centre, or the position.

    [[nodiscard]] QString whereText() const { return where.join(SEPARATOR); }
};
using Rows = QVector<Row>;

QString nameText(const AbstractPlace &place)
{
    const QString other = place.description().simplified();
    return other.isEmpty() || other.size() > LONGEST_OTHER_NAME || other == place.name()
               ? place.name()
               : QStringLiteral("%1 (%2)").arg(place.name(), other);
}

/// The parts of the address, without repetitions and without the name.
QStringList whereParts(const AbstractPlace &place)
{
    if (kindOf(place) == ResultKind::Category)
        return {QStringLiteral("category")};
    QStringList parts = place.primaryLocation().split(SEPARATOR, Qt::SkipEmptyParts);
    parts.removeAll(place.name());
    parts.removeDuplicates();
    return parts;
}

/// The direction in which a great circle starts, as one of eight points of the compass.
QString directionText(const Coordinates &from, const Coordinates &to)
{
    static constexpr const char *POINTS[] = {"N ", "NE", "E ", "SE", "S ", "SW", "W ", "NW"};
    constexpr int COUNT = std::size(POINTS);
    const double start = qDegreesToRadians(from.latitude());
    const double end = qDegreesToRadians(to.latitude());
    const double turn = qDegreesToRadians(to.longitude() - from.longitude());
    const double east = std::sin(turn) * std::cos(end);
    const double north = std::cos(start) * std::sin(end) - std::sin(start) * std::cos(end) * std::cos(turn);
    const int point = qRound(std::atan2(east, north) / (2 * M_PI) * COUNT);
    return QLatin1String(POINTS[(point + COUNT) % COUNT]);
}

QString distanceText(const Coordinates &from, const Coordinates &to)
{
    const double metres = Utilities::calculateDistanceInMeter(from, to);
    const QString direction = QLatin1Char(' ') + (metres < 1 ? QStringLiteral("  ") : directionText(from, to));
    if (metres < 1000)
        return QStringLiteral("%1 m").arg(qRound(metres)) + direction;
    return QStringLiteral("%1 km").arg(metres / 1000, 0, 'f', metres < 10000 ? 1 : 0) + direction;
}

/// Empty for a place without a position.
QString pointColumn(const Coordinates &centre, const Coordinates &position)
{
    if (!position.isValid())
        return {};
    return centre.isValid() ? distanceText(centre, position) : pointText(position);
}

Row rowOf(const AbstractPlace &place, const RowFormat &format)
{
    const QString id = place.isPersisted() ? QString::number(place.id()) : QString();
    const QChar star = place.isFavorite() ? QChar(0x2605) : QLatin1Char(' ');
    const QString lead = format.hasIds ? id.rightJustified(ID_WIDTH) + QLatin1Char(' ') : QString();
    return {lead + star + QLatin1Char(' '), nameText(place), whereParts(place),
            pointColumn(format.centre, place.primaryCoordinates())};
}

/// The rows, beginning with their numbers if the format says so.
Rows allRows(const PlaceList &places, const RowFormat &format)
{
    Rows rows;
    for (const AbstractPlace *place : places) {
        Row row = rowOf(*place, format);
        if (format.firstNumber > 0)
            row.lead.prepend(QString::number(format.firstNumber + rows.size()).rightJustified(NUMBER_WIDTH)
                             + QStringLiteral(". "));
        rows.append(row);
    }
    return rows;
}

QString withoutEndBlanks(QString text)
{
    while (text.endsWith(QLatin1Char(' ')))
        text.chop(1);
    return text;
}

template <typename Text>
int widest(const Rows &rows, const Text &textOf)
{
    int columns = 0;
    for (const Row &row : rows)
        columns = std::max(columns, columnsOf(printable(textOf(row))));
    return columns;
}

int widestWhere(const Rows &rows)
{
    return widest(rows, [](const Row &row) { return row.whereText(); });
}

/// Drops parts of addresses that occur in the name, then the last parts while they are the same in all rows. At least
/// one part stays.
void shortenWhere(Rows &rows)
{
    for (Row &row : rows) {
        const auto isInName = [&row](const QString &part) {
            const QRegularExpression words(QStringLiteral("\\b%1\\b").arg(QRegularExpression::escape(part)),
                                           QRegularExpression::UseUnicodePropertiesOption);
            return words.match(row.name).hasMatch();
        };
        while (row.where.size() > 1 && isInName(row.where.first()))
            row.where.removeFirst();
    }
    const auto isShared = [&rows](const Row &row) {
        return row.where.size() > 1 && row.where.last() == rows.first().where.last();
    };
    while (rows.size() > 1 && std::all_of(rows.begin(), rows.end(), isShared)) {
        for (Row &row : rows)
            row.where.removeLast();
    }
}

/// The width of the names when names and addresses share `room` columns.
int nameWidth(Rows &rows, int room)
{
    const int names = widest(rows, [](const Row &row) { return row.name; });
    if (names + widestWhere(rows) > room)
        shortenWhere(rows);
    const int where = widestWhere(rows);
    const int share = std::min(NAME_WIDTH, room - std::max(std::min(WHERE_WIDTH, room / 2), room / 3));
    return names + where > room ? std::min(names, std::max(share, room - where))
                                : std::max(names, std::min(share, room - where));
}

} // namespace

ResultKind kindOf(const AbstractPlace &result)
{
    if (result.isPersisted() || result.hasPhysicalLocation())
        return ResultKind::Place;
    if (!result.hasAuxiliaryData())
        return ResultKind::Term;
    // A header cannot tell this tag from a user's tag. Only a provider's category has the tag and no position.
    if (const auto *header = dynamic_cast<const PlaceHeader *>(&result)) {
        const bool isOfProvider = header->hasAuxiliaryData(AuxiliaryData::TypePointOfInterest) == PlaceHeader::Present;
        return isOfProvider && result.hasTag() ? ResultKind::Category : ResultKind::Place;
    }
    const auto *place = dynamic_cast<const Place *>(&result);
    return place && place->hasTag(QStringLiteral("lbs-st-category")) ? ResultKind::Category : ResultKind::Place;
}

QStringList rowsOf(const PlaceList &places, const RowFormat &format)
{
    Rows rows = allRows(places, format);
    if (rows.isEmpty())
        return {};
    int points = widest(rows, [](const Row &row) { return row.point; });
    const int lead = widest(rows, [](const Row &row) { return row.lead; });
    const bool isLimited = format.columns > 0;
    const int columns = format.columns - lead - 1;
    if (isLimited && !format.centre.isValid() && columns - points - 1 < LEAST_BESIDE_POSITION)
        points = 0;
    const int room = std::max(2, columns - (points > 0 ? points + 1 : 0));
    const int names = isLimited ? nameWidth(rows, room) : NAME_WIDTH;
    const int where = isLimited ? std::min(room - names, widestWhere(rows)) : widestWhere(rows);
    QStringList texts;
    for (const Row &row : qAsConst(rows)) {
        QString text = cell(row.lead, lead) + cell(row.name, names) + QLatin1Char(' ');
        text += cell(row.whereText(), where);
        if (points > 0)
            text += QLatin1Char(' ') + row.point.rightJustified(points);
        texts.append(withoutEndBlanks(text));
    }
    return texts;
}

QString pointText(const Coordinates &point)
{
    return QStringLiteral("%1, %2").arg(point.latitude(), 0, 'f', 5).arg(point.longitude(), 0, 'f', 5);
}

} // namespace tool
