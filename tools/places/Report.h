// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/Error.h>

#include <QtCore/QList>
#include <QtCore/QString>
#include <QtCore/QStringList>

namespace vela::platform::places
{
class AbstractPlace;
class Place;
class PlaceHeader;
} // namespace vela::platform::places

/// What the client says, and how it ends.
namespace tool
{

namespace places = vela::platform::places;

/// Exit statuses; the last one is that of sysexits.h.
enum ExitStatus : int
{
    Done = 0,
    Failed = 1,
    WrongUse = 2,
    NoService = 69
};

/// How results are written to standard output.
enum class Form
{
    Table,    ///< For people.
    Json,     ///< GeoJSON, or JSON for what is no place.
    Document, ///< The library's JSON document of a place.
};

/// The exit status for an outcome. A failure is told on standard error, as what became of `what`.
ExitStatus report(places::Error::Type outcome, const QString &what);

/// Tells on standard error what is wrong, and where.
void complain(const QString &where, const QString &problem);

/// Writes a list of places.
void printPlaces(const QList<places::PlaceHeader *> &found, Form form);
/// Writes a place with all it has.
void printPlace(const places::Place &place, Form form);
/// Writes texts, one a line or as a JSON array.
void printTexts(const QStringList &texts, Form form);
/// Writes one line.
void printLine(const QString &line);

} // namespace tool
