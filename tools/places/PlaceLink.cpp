// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "PlaceLink.h"

#include "formats/Feature.h"

#include <places/Place.h>
#include <places/Utilities.h>

#include <QtCore/QRegularExpression>
#include <QtCore/QStringList>

#include <cstring>
#include <optional>

namespace tool
{

using namespace vela::platform::places;

namespace
{

constexpr char SCHEME[] = "geo:";

/// A number in the form of RFC 5870: no plus sign, no exponent.
std::optional<double> parseNumber(const QString &text)
{
    static const QRegularExpression NUMBER(QStringLiteral(R"(\A-?[0-9]+(\.[0-9]+)?\z)"));
    return NUMBER.match(text).hasMatch() ? std::optional(text.toDouble()) : std::nullopt;
}

/// "LATITUDE,LONGITUDE" or "LATITUDE,LONGITUDE,ALTITUDE"; invalid for any other text.
Coordinates parsePosition(const QString &text)
{
    const QStringList parts = text.split(QLatin1Char(','));
    std::optional<double> numbers[3];
    if (parts.size() < 2 || parts.size() > 3)
        return {};
    for (int i = 0; i < parts.size(); ++i) {
        numbers[i] = parseNumber(parts[i]);
        if (!numbers[i])
            return {};
    }
    Coordinates position(*numbers[0], *numbers[1]);
    if (numbers[2])
        position.setAltitude(*numbers[2]);
    return position;
}

/// Reads the parameters "NAME=VALUE" after the coordinates, case-insensitively.
QString readParameters(const QStringList &parameters, Coordinates &position)
{
    for (const QString &parameter : parameters) {
        const QString name = parameter.section(QLatin1Char('='), 0, 0).toLower();
        const QString value = QUrl::fromPercentEncoding(parameter.section(QLatin1Char('='), 1).toUtf8()).toLower();
        if (name == QLatin1String("crs") && value.isEmpty())
            return QStringLiteral("the reference system has no name");
        if (name == QLatin1String("crs") && value != QLatin1String("wgs84"))
            return QStringLiteral("the reference system %1 is not known; positions are in wgs84").arg(value);
        if (name != QLatin1String("u"))
            continue;
        const std::optional<double> number = parseNumber(value);
        const std::optional<float> metres = number ? formats::toAccuracy(*number) : std::nullopt;
        if (!metres)
            return QStringLiteral("the uncertainty is no number of metres");
        position.setHorizontalAccuracy(*metres);
    }
    return {};
}

/// The value of "q", with "+" for a blank.
QString queryText(const QString &query)
{
    for (const QString &item : query.split(QLatin1Char('&'))) {
        if (item.startsWith(QLatin1String("q="), Qt::CaseInsensitive))
            return QUrl::fromPercentEncoding(item.mid(2).replace(QLatin1Char('+'), QLatin1String("%20")).toUtf8());
    }
    return {};
}

/// Reads "q", which may give a more precise position than the coordinates.
void readQuery(const QString &text, Coordinates &position, QString &name, Address &address)
{
    static const QRegularExpression LABELLED(QStringLiteral(R"(\A([^()]*)\((.*)\)\z)"),
                                             QRegularExpression::DotMatchesEverythingOption);
    const QRegularExpressionMatch match = LABELLED.match(text);
    const Coordinates queried = parsePosition((match.hasMatch() ? match.captured(1) : text).trimmed());
    if (queried.isValid()) {
        position.setLatitude(queried.latitude());
        position.setLongitude(queried.longitude());
        name = match.captured(2);
    } else if (position.latitude() == 0 && position.longitude() == 0 && !text.isEmpty()) {
        position = Coordinates();
        address.setLabel(text);
    } else {
        name = text;
    }
}

QString readGeoUri(const QString &uri, Place &place)
{
    const QString whole = uri.mid(static_cast<int>(std::strlen(SCHEME))).section(QLatin1Char('#'), 0, 0);
    QStringList parts = whole.section(QLatin1Char('?'), 0, 0).split(QLatin1Char(';'));
    Coordinates position = parsePosition(QUrl::fromPercentEncoding(parts.takeFirst().toUtf8()));
    // The reference system comes first: the numbers depend on it.
    if (QString problem = readParameters(parts, position); !problem.isEmpty())
        return problem;
    if (!position.isValid())
        return QStringLiteral("its coordinates are no point on the Earth; write geo:LATITUDE,LONGITUDE in degrees");
    QString name;
    Address address;
    readQuery(queryText(whole.section(QLatin1Char('?'), 1)), position, name, address);

    Location location;
    location.setAddress(address);
    location.setCoordinates(position);
    place.setName(name);
    place.addLocation(location);
    return {};
}

QString readMapLink(QString link, Place &place)
{
    // Escape a "%" that begins no escape; else QUrl rewrites all other escapes too.
    static const QRegularExpression BARE_PERCENT(QStringLiteral("%(?![0-9A-Fa-f]{2})"));
    const QUrl url(link.replace(BARE_PERCENT, QStringLiteral("%25")));
    if (!url.isValid() || !Utilities::readMapUrl(url, place))
        return QStringLiteral("not a link of the map web service; places link prints one");
    return {};
}

} // namespace

bool isLink(const QString &text)
{
    static const QRegularExpression LINK(QStringLiteral(R"(\A(geo:|https?://))"),
                                         QRegularExpression::CaseInsensitiveOption);
    return LINK.match(text).hasMatch();
}

QString readLink(const QString &text, Place &place)
{
    place.setSource(AbstractPlace::SourceGeolink);
    if (text.startsWith(QLatin1String(SCHEME), Qt::CaseInsensitive))
        return readGeoUri(text, place);
    return readMapLink(text, place);
}

} // namespace tool
