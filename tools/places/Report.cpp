// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "Report.h"

#include "JsonWriter.h"
#include "PlaceRows.h"
#include "PlaceView.h"
#include "TerminalText.h"

#include <places/Place.h>
#include <places/PlaceJson.h>

#include <cerrno>
#include <cstdio>

#include <sys/ioctl.h>
#include <unistd.h>

namespace tool
{

using namespace places;

namespace
{

const char *wordsFor(Error::Type error)
{
    switch (error) {
    case Error::Success:
        return "done";
    case Error::Unspecified:
    case Error::Reserved:
        return "failed";
    case Error::RefusedList:
        return "a member of the list is not acceptable";
    case Error::InvalidArgument:
        return "not possible as it is";
    case Error::NotFound:
        return "there is no such place";
    case Error::AlreadyStored:
        return "stored already";
    case Error::PermissionDenied:
        return "not permitted";
    case Error::CommunicationFailed:
        return "the places service could not be understood";
    case Error::ServiceUnavailable:
        return "no places service is running";
    case Error::PlaceNotAcceptable:
        return "the places service does not take such a place";
    case Error::StorageFailed:
        return "the places service could not read or write its store";
    case Error::LimitExceeded:
        return "more than the places service allows";
    case Error::Busy:
        return "the places service is busy; try again";
    case Error::TimedOut:
        return "the places service took too long";
    case Error::NotUnderstood:
        return "the places service does not know this request";
    case Error::ProviderFailed:
        return "a provider of places failed";
    case Error::BackupFailed:
        return "the backup was not made; the log of the places service says why";
    case Error::RestoreFailed:
        return "the backup was not restored; the log of the places service says why";
    }
    return "failed";
}

} // namespace

void complain(const QString &where, const QString &problem)
{
    std::fprintf(stderr, "places: %s: %s\n", qUtf8Printable(printable(where)), qUtf8Printable(printable(problem)));
}

QString textOf(Error::Type outcome)
{
    return QLatin1String(wordsFor(outcome));
}

ExitStatus statusOf(Error::Type outcome)
{
    if (outcome == Error::Success)
        return Done;
    return outcome == Error::ServiceUnavailable ? NoService : Failed;
}

ExitStatus report(Error::Type outcome, const QString &what)
{
    if (outcome != Error::Success)
        complain(what, textOf(outcome));
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

void printRows(const PlaceList &found, const Coordinates &centre)
{
    for (const QString &row : rowsOf(found, {centre, terminalColumns(STDOUT_FILENO)}))
        printLine(row);
}

void reportNoneShown(bool hasMore)
{
    std::fprintf(stderr,
                 hasMore ? "places: --limit 0 shows none of those that are found\n" : "places: nothing found\n");
}

void printPlaces(const PlaceList &found, bool hasMore, Form form, const Coordinates &centre)
{
    if (form != Form::Table)
        return printJson(toGeoJson(found, hasMore));
    printRows(found, centre);
    if (found.isEmpty())
        reportNoneShown(hasMore);
    else if (hasMore)
        std::fprintf(stderr, "places: there are more; see --limit and --offset\n");
}

void printPlace(const Place &place, Form form)
{
    switch (form) {
    case Form::Table:
        return void(std::fputs(qUtf8Printable(viewOf(place)), stdout));
    case Form::Json:
        return printJson(toGeoJson(place));
    case Form::Document:
        return printJson(PlaceJson::write(place));
    }
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
