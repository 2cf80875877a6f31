// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "formats/GeoJsonWriter.h"
#include "PlaceTemplate.h"

#include <places/Coordinates.h>
#include <places/Error.h>

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <memory>
#include <optional>
#include <vector>

namespace vela::platform::places
{
class AbstractPlace;
class Place;
} // namespace vela::platform::places

/// Output, messages and exit statuses of the client.
namespace tool
{

namespace places = vela::platform::places;

/// Exit statuses.
enum ExitStatus : int
{
    Done = 0,
    Failed = 1,
    WrongUse = 2,
    NoService = 69,   ///< EX_UNAVAILABLE of sysexits.h.
    Interrupted = 128 ///< Plus the signal number, as shells report a program that a signal ended.
};

/// Form of results on standard output.
enum class Form
{
    Table,    ///< For people.
    Json,     ///< GeoJSON, or JSON for results that are not places.
    Document, ///< The library's JSON document of a place.
};

/// Form of a list of places.
struct ListForm
{
    Form form = Form::Table;
    std::optional<PlaceTemplate> row = {}; ///< Template of each row; without it, columns for people.
    places::Coordinates centre = {};       ///< Distances are measured from here; invalid for none.
};

/// The message for an outcome: the error with the service's reason, or with advice when there is no reason.
QString textOf(places::Error::Type outcome, const QString &reason);
ExitStatus statusOf(places::Error::Type outcome);
/// The exit status for an outcome. A failure of `what` is printed to standard error, with the reason of this thread's
/// last request.
ExitStatus report(places::Error::Type outcome, const QString &what);
/// Overload with the reason, for a request of another thread.
ExitStatus report(places::Error::Type outcome, const QString &what, const QString &reason);

/// Prints a problem and where it is to standard error.
void complain(const QString &where, const QString &problem);
/// The same as the last action of a command: returns Failed, or WrongUse with a hint to the command's help.
ExitStatus fail(const QString &where, const QString &problem);
ExitStatus misuse(const char *command, const QString &problem);

/// The names of a place and of a number of places in messages.
QString nameOfPlace(qint64 id);
QString nameOfPlace(const places::AbstractPlace &place);
QString countOf(qint64 places);

/// Prints to standard error why no place is shown: nothing was found, or the limit is 0.
/// @param hasMore true when places are found.
void reportNoneShown(bool hasMore);

/// Writes a list of places.
/// @param hasMore true when the service has more places.
void printPlaces(const formats::PlaceList &found, bool hasMore, const ListForm &form);
/// Writes places as rows: those of the form, or else of the terminal's width.
/// @param firstNumber rows of the terminal's width begin with numbers from this one on; 0 for none.
void printRows(const formats::PlaceList &found, const ListForm &form, int firstNumber = 0);
/// Writes all data of a place.
void printPlace(const places::Place &place, Form form);
/// Writes all data of places as GeoJSON: a Feature if there is one, or a list as a FeatureCollection.
void printFeatures(const std::vector<std::unique_ptr<places::Place>> &places, bool isList);
/// Writes texts, one per line or as a JSON array.
void printTexts(const QStringList &texts, Form form);
/// Writes a line for people.
void printLine(const QString &line);
/// Writes a JSON text; on a terminal without control characters, see printableJson().
void printJson(const QByteArray &json);

/// Width of the terminal in columns; 0 when the descriptor is not a terminal.
int terminalColumns(int descriptor);

/// Flushes standard output. On a failure prints an error and returns Failed.
ExitStatus finishOutput();

} // namespace tool
