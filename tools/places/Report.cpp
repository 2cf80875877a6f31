// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "Report.h"

#include "GeoJsonWriter.h"
#include "PlaceView.h"

#include <places/Place.h>
#include <places/PlaceHeader.h>
#include <places/PlaceJson.h>

#include <cstdio>

namespace tool
{

using namespace places;

namespace
{

constexpr int ID_WIDTH = 7;
constexpr int NAME_WIDTH = 40;

const char *textOf(Error::Type error)
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
        return "the backup was not made";
    case Error::RestoreFailed:
        return "the backup was not restored";
    }
    return "failed";
}

/// Text cut or filled to a width. Control characters, which a place's name may hold, would confuse a terminal.
QString cell(QString text, int width)
{
    for (QChar &c : text) {
        if (c.category() == QChar::Other_Control)
            c = QLatin1Char(' ');
    }
    return text.size() > width ? text.left(width - 1) + QChar(0x2026) : text.leftJustified(width);
}

} // namespace

void complain(const QString &where, const QString &problem)
{
    std::fprintf(stderr, "places: %s: %s\n", qUtf8Printable(where), qUtf8Printable(problem));
}

ExitStatus report(Error::Type outcome, const QString &what)
{
    if (outcome == Error::Success)
        return Done;
    complain(what, QLatin1String(textOf(outcome)));
    return outcome == Error::ServiceUnavailable ? NoService : Failed;
}

void printLine(const QString &line)
{
    std::printf("%s\n", qUtf8Printable(line));
}

void printTexts(const QStringList &texts, Form form)
{
    printLine(form == Form::Json ? QString::fromUtf8(toJson(texts)) : texts.join(QLatin1Char('\n')));
}

void printPlaces(const QList<PlaceHeader *> &found, Form form)
{
    if (form == Form::Json)
        return printLine(QString::fromUtf8(toGeoJson(found)));
    for (const PlaceHeader *place : found) {
        printLine(QStringLiteral("%1 %2 %3 %4")
                      .arg(place->id(), ID_WIDTH)
                      .arg(place->isFavorite() ? QChar(0x2605) : QLatin1Char(' '))
                      .arg(cell(place->name(), NAME_WIDTH), place->primaryLocation()));
    }
    if (found.isEmpty())
        std::fprintf(stderr, "places: nothing found\n");
}

void printPlace(const Place &place, Form form)
{
    switch (form) {
    case Form::Table:
        return void(std::fputs(qUtf8Printable(viewOf(place)), stdout));
    case Form::Json:
        return printLine(QString::fromUtf8(toGeoJson(place)));
    case Form::Document:
        return printLine(QString::fromUtf8(PlaceJson::write(place)));
    }
}

} // namespace tool
