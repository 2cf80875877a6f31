// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QMap>
#include <QtCore/QString>
#include <QtCore/QStringList>

namespace formats
{

namespace csv
{

/// Columns of the position.
constexpr char LATITUDE[] = "latitude";
constexpr char LONGITUDE[] = "longitude";
constexpr char ALTITUDE[] = "altitude";
constexpr char COORDINATES[] = "coordinates"; ///< Latitude and longitude in one field.
constexpr char GEOMETRY[] = "geometry";       ///< Well-known text (OGC 06-103r4).

} // namespace csv

/// The columns of a table.
struct CsvColumns
{
    QStringList headings;
    QStringList names; ///< A property or a column of the position; the heading for any other column.

    /// True for a property or a column of the position.
    [[nodiscard]] bool isKnown(int column) const;
    /// A description for users: "columns: name from Title, latitude from y; others kept: z". Empty when all headings
    /// are known names.
    [[nodiscard]] QString description() const;
};

/// Finds the columns for headings. A heading matches a name regardless of case, blanks, dashes and underscores. Other
/// words for a name, in several languages, match only when no column has the name yet.
/// @param given names of columns by their headings; they take precedence.
CsvColumns columnsOf(const QStringList &headings, const QMap<QString, QString> &given);

/// A text as a CSV file stores it: with U+FFFD for null characters. A KeepText.
QString toCsvText(const QString &name, const QString &text);

} // namespace formats
