// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "PlaceRows.h"

#include "TerminalText.h"

#include <places/Place.h>
#include <places/PlaceHeader.h>
#include <places/Utilities.h>

#include <QtCore/QRegularExpression>
#include <QtCore/QVector>

#include <algorithm>

namespace tool
{

using namespace formats;
using namespace vela::platform::places;

namespace
{

constexpr int ID_WIDTH = 7;
/// Preferred width of the names, in columns.
constexpr int NAME_WIDTH = 40;
/// Minimum width of the addresses, in columns, as long as it is at most half of the row.
constexpr int WHERE_WIDTH = 14;
/// A longer description is not shown as a name.
constexpr int LONGEST_OTHER_NAME = 40;
const QString SEPARATOR = QStringLiteral(", ");

struct Row
{
    QString lead;
    QString name;
    QStringList where; ///< Parts of the address, the largest last.
    QString distance;

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

QString distanceText(const Coordinates &from, const Coordinates &to)
{
    if (!from.isValid() || !to.isValid())
        return {};
    const double metres = Utilities::calculateDistanceInMeter(from, to);
    if (metres < 1000)
        return QStringLiteral("%1 m").arg(qRound(metres));
    return QStringLiteral("%1 km").arg(metres / 1000, 0, 'f', metres < 10000 ? 1 : 0);
}

Row rowOf(const AbstractPlace &place, const RowFormat &format)
{
    const QString id = place.isPersisted() ? QString::number(place.id()) : QString();
    const QChar star = place.isFavorite() ? QChar(0x2605) : QLatin1Char(' ');
    const QString lead = format.hasIds ? id.rightJustified(ID_WIDTH) + QLatin1Char(' ') : QString();
    return {lead + star + QLatin1Char(' '), nameText(place), whereParts(place),
            distanceText(format.centre, place.primaryCoordinates())};
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
            const QString words = QStringLiteral("\\b%1\\b").arg(QRegularExpression::escape(part));
            return QRegularExpression(words, QRegularExpression::UseUnicodePropertiesOption).match(row.name).hasMatch();
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
    Rows rows;
    for (const AbstractPlace *place : places)
        rows.append(rowOf(*place, format));
    if (rows.isEmpty())
        return {};
    const int distances = widest(rows, [](const Row &row) { return row.distance; });
    const int lead = widest(rows, [](const Row &row) { return row.lead; });
    const bool isLimited = format.columns > 0;
    const int room = std::max(2, format.columns - lead - 1 - (distances > 0 ? distances + 1 : 0));
    const int names = isLimited ? nameWidth(rows, room) : NAME_WIDTH;
    const int where = isLimited ? room - names : widestWhere(rows);
    QStringList texts;
    for (const Row &row : qAsConst(rows)) {
        QString text = row.lead + cell(row.name, names) + QLatin1Char(' ');
        text += isLimited || distances > 0 ? cell(row.whereText(), where) : printable(row.whereText());
        if (distances > 0)
            text += QLatin1Char(' ') + row.distance.rightJustified(distances);
        texts.append(text);
    }
    return texts;
}

} // namespace tool
