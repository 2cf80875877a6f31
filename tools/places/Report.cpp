// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "Report.h"

#include "GeoJsonWriter.h"

#include <places/Place.h>
#include <places/PlaceHeader.h>

#include <QtCore/QDateTime>

#include <cstdio>

namespace tool
{

using namespace places;

namespace
{

constexpr int ID_WIDTH = 7;
constexpr int NAME_WIDTH = 40;
constexpr int FIELD_WIDTH = 14;

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

QString positionText(const Coordinates &position)
{
    if (!position.isValid())
        return {};
    return QStringLiteral("%1, %2").arg(position.latitude(), 0, 'f', 5).arg(position.longitude(), 0, 'f', 5);
}

void printField(const char *name, const QString &value)
{
    if (!value.isEmpty())
        printLine(QString::fromLatin1(name).leftJustified(FIELD_WIDTH) + value);
}

QString timeText(quint64 seconds)
{
    return seconds == 0 ? QString()
                        : QDateTime::fromSecsSinceEpoch(static_cast<qint64>(seconds), Qt::UTC).toString(Qt::ISODate);
}

void printAuxiliaryData(const AuxiliaryData &data)
{
    printField("Record", data.type() + QLatin1Char(' ') + data.externalId());
    const QMap<QString, QString> properties = data.properties();
    for (auto property = properties.begin(); property != properties.end(); ++property) {
        if (!property.value().isEmpty())
            printLine(QStringLiteral("  ") + property.key().leftJustified(12) + property.value());
    }
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
    if (form == Form::Json)
        return printLine(QString::fromUtf8(toGeoJson(place)));
    printField("Id", QString::number(place.id()));
    printField("Name", place.name());
    printField("Also", place.aliases().join(QStringLiteral(", ")));
    printField("Description", place.description());
    for (int i = 0; i < place.locationCount(); ++i) {
        const Location location = place.location(i);
        const Address address = location.address();
        printField("Address", address.label().isEmpty() ? place.primaryLocation() : address.label());
        printField("Position", positionText(location.coordinates()));
    }
    QStringList tags;
    for (int i = 0; i < place.tagCount(); ++i)
        tags.append(place.tag(i));
    printField("Tags", tags.join(QStringLiteral(", ")));
    printField("Phone", place.primaryPhoneNumber());
    printField("E-mail", place.primaryEmailAddress());
    printField("Web", place.primaryUrl().toString());
    for (int i = 0; i < place.auxiliaryDataCount(); ++i)
        printAuxiliaryData(place.auxiliaryData(i));
    printField("Owner", place.owner());
    printField("Uses", place.usageCount() > 0 ? QString::number(place.usageCount()) : QString());
    printField("Last used", timeText(place.lastUsedTime()));
    printField("Stored", timeText(place.creationTime()));
    printField("Changed", timeText(place.updateTime()));
}

} // namespace tool
