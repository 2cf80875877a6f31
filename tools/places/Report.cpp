// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "Report.h"

#include "formats/JsonWriter.h"
#include "PlaceRows.h"
#include "PlaceView.h"
#include "TerminalText.h"

#include <places/Place.h>
#include <places/PlaceJson.h>

#include <QtCore/QByteArrayList>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <iterator>

#include <sys/ioctl.h>
#include <unistd.h>

namespace tool
{

using namespace formats;
using namespace places;

namespace
{

struct Advice
{
    Error::Type error;
    const char *words;
};

/// Advice when the service gives no reason.
constexpr Advice ADVICE[] = {
    {Error::Unspecified, "the cause may be in the log of the places service"},
    {Error::InvalidArgument, "see --help"},
    {Error::NotFound, "list the stored places with places find"},
    {Error::AlreadyStored, "change it with places update"},
    {Error::PermissionDenied, "the places may be another user's"},
    {Error::CommunicationFailed, "it may have another version"},
    {Error::ServiceUnavailable, "start placesd"},
    {Error::StorageFailed, "the cause is in its log"},
    {Error::LimitExceeded, "request less"},
    {Error::Busy, "try again"},
    {Error::TimedOut, "try again, or request less"},
    {Error::NotUnderstood, "it may have an older version"},
    {Error::ProviderFailed, "the cause is in the log of the places service"},
    {Error::BackupFailed, "the cause is in the log of the places service"},
    {Error::RestoreFailed, "the cause is in the log of the places service"},
};

/// The advice for an error; empty when there is none.
QString adviceFor(Error::Type error)
{
    const auto *const found = std::find_if(std::begin(ADVICE), std::end(ADVICE),
                                           [error](const Advice &advice) { return advice.error == error; });
    return found == std::end(ADVICE) ? QString() : QLatin1String("; ") + QLatin1String(found->words);
}

} // namespace

void complain(const QString &where, const QString &problem)
{
    std::fprintf(stderr, "places: %s: %s\n", qUtf8Printable(printable(where)), qUtf8Printable(printable(problem)));
}

ExitStatus fail(const QString &where, const QString &problem)
{
    complain(where, problem);
    return Failed;
}

ExitStatus misuse(const char *command, const QString &problem)
{
    complain(QLatin1String(command), QStringLiteral("%1; see places %2 --help").arg(problem, QLatin1String(command)));
    return WrongUse;
}

QString nameOfPlace(qint64 id)
{
    return QStringLiteral("place %1").arg(id);
}

QString nameOfPlace(const AbstractPlace &place)
{
    const QString where = place.primaryLocation();
    return place.name() + (where.isEmpty() ? QString() : QStringLiteral(" (%1)").arg(where));
}

QString countOf(qint64 places)
{
    return places == 1 ? QStringLiteral("1 place") : QStringLiteral("%1 places").arg(places);
}

QString textOf(Error::Type outcome, const QString &reason)
{
    return errorString(outcome) + (reason.isEmpty() ? adviceFor(outcome) : QLatin1String(": ") + reason);
}

ExitStatus statusOf(Error::Type outcome)
{
    if (outcome == Error::Success)
        return Done;
    return outcome == Error::ServiceUnavailable ? NoService : Failed;
}

ExitStatus report(Error::Type outcome, const QString &what)
{
    return report(outcome, what, Error::reason(outcome));
}

ExitStatus report(Error::Type outcome, const QString &what, const QString &reason)
{
    if (outcome != Error::Success)
        complain(what, textOf(outcome, reason));
    return statusOf(outcome);
}

void printLine(const QString &line)
{
    std::printf("%s\n", qUtf8Printable(printable(line)));
}

void printJson(const QByteArray &json)
{
    std::printf("%s\n", printableJson(json).constData());
}

void printTexts(const QStringList &texts, Form form)
{
    if (form == Form::Table) {
        for (const QString &text : texts)
            printLine(text);
        if (texts.isEmpty())
            reportNoneShown(false);
        return;
    }
    JsonWriter out;
    out.list(texts);
    printJson(out.result());
}

int terminalColumns(int descriptor)
{
    struct winsize size = {};
    return ::isatty(descriptor) && ::ioctl(descriptor, TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
}

void printRows(const PlaceList &found, const ListForm &form, int firstNumber)
{
    if (form.row) {
        for (const AbstractPlace *place : found)
            std::printf("%s\n", qUtf8Printable(form.row->row(*place, form.centre)));
        return;
    }
    const QStringList rows = rowsOf(found, {form.centre, terminalColumns(STDOUT_FILENO), true, firstNumber});
    for (const QString &row : rows)
        printLine(row);
}

void reportNoneShown(bool hasMore)
{
    std::fprintf(stderr,
                 hasMore ? "places: --limit 0 shows none of those that are found\n" : "places: nothing found\n");
}

void printPlaces(const PlaceList &found, bool hasMore, const ListForm &form)
{
    if (form.form != Form::Table)
        return printJson(toGeoJson(found, hasMore, form.centre));
    printRows(found, form);
    if (found.isEmpty())
        reportNoneShown(hasMore);
    else if (hasMore)
        std::fprintf(stderr, "places: there are more results; see --limit and --offset\n");
}

void printPlace(const Place &place, Form form)
{
    switch (form) {
    case Form::Table:
        return void(std::fputs(qUtf8Printable(viewOf(place)), stdout));
    case Form::Json:
        return printJson(toGeoJson(place));
    case Form::Document:
        return printJson(PlaceJson::write(place, PlaceJson::Texts::Unicode));
    }
}

void printFeatures(const std::vector<std::unique_ptr<Place>> &places, bool isList)
{
    QByteArrayList features;
    for (const auto &place : places)
        features.append(toGeoJson(*place));
    if (isList)
        printJson(R"({"type":"FeatureCollection","features":[)" + features.join(',') + "]}");
    else if (!features.isEmpty())
        printJson(features.first());
}

ExitStatus finishOutput()
{
    const bool wasWritten = std::ferror(stdout) == 0;
    if (std::fflush(stdout) == 0 && wasWritten)
        return Done;
    complain(QStringLiteral("standard output"),
             wasWritten ? qt_error_string(errno) : QStringLiteral("could not be written"));
    return Failed;
}

} // namespace tool
