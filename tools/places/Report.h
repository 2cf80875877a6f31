// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "formats/GeoJsonWriter.h"

#include <places/Coordinates.h>
#include <places/Error.h>

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QStringList>

namespace vela::platform::places
{
class AbstractPlace;
class Place;
} // namespace vela::platform::places

/// What the client says, and how it ends.
namespace tool
{

namespace places = vela::platform::places;

/// Exit statuses.
enum ExitStatus : int
{
    Done = 0,
    Failed = 1,
    WrongUse = 2,
    NoService = 69,   ///< That of sysexits.h.
    Interrupted = 128 ///< Plus the number of the signal; what a shell makes of a program that ended by one.
};

/// How results are written to standard output.
enum class Form
{
    Table,    ///< For people.
    Json,     ///< GeoJSON, or JSON for what is no place.
    Document, ///< The library's JSON document of a place.
};

/// An outcome in words: what failed, and the service's reason, or without one what can be done.
QString textOf(places::Error::Type outcome, const QString &reason);
ExitStatus statusOf(places::Error::Type outcome);
/// The exit status for an outcome. A failure is told on standard error, as what became of `what`, with the reason of
/// the last request of this thread.
ExitStatus report(places::Error::Type outcome, const QString &what);
/// The same for a request of another thread.
ExitStatus report(places::Error::Type outcome, const QString &what, const QString &reason);

/// Tells on standard error what is wrong, and where.
void complain(const QString &where, const QString &problem);
/// The same, as the end of a command: Failed, or WrongUse of a command with a hint to its help.
ExitStatus fail(const QString &where, const QString &problem);
ExitStatus misuse(const char *command, const QString &problem);

/// What messages call a place, and a number of places.
QString nameOfPlace(qint64 id);
QString countOf(qint64 places);

/// Tells on standard error why no place is shown: nothing was found, or the limit is 0.
/// @param hasMore true when places were found.
void reportNoneShown(bool hasMore);

/// Writes a list of places.
/// @param hasMore true when the service has more of them.
/// @param centre where distances are measured from; not valid for none.
void printPlaces(const formats::PlaceList &found, bool hasMore, Form form, const places::Coordinates &centre);
/// Writes places as rows, as wide as the terminal is.
void printRows(const formats::PlaceList &found, const places::Coordinates &centre);
/// Writes a place with all it has.
void printPlace(const places::Place &place, Form form);
/// Writes texts, one a line or as a JSON array.
void printTexts(const QStringList &texts, Form form);
/// Writes a line for people.
void printLine(const QString &line);
/// Writes a JSON text in a form that does not steer a terminal, see printableJson().
void printJson(const QByteArray &json);

/// The columns of the terminal that a file is; 0 when it is none.
int terminalColumns(int descriptor);

/// Writes out what is still to be written to standard output. Failed, and says so, when that was not possible.
ExitStatus finishOutput();

} // namespace tool
