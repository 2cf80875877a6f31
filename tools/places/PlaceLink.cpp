// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "PlaceLink.h"

#include "formats/Position.h"
#include "MapSites.h"

#include <places/Place.h>
#include <places/Utilities.h>

#include <QtCore/QRegularExpression>
#include <QtCore/QStringList>
#include <QtCore/QUrlQuery>

namespace tool
{

using namespace vela::platform::places;

namespace
{

/// The value of "q"; "+" is a blank.
QString queryText(const QString &query)
{
    const QStringList items = query.split(QLatin1Char('&'));
    for (const QString &item : items) {
        if (item.startsWith(QLatin1String("q="), Qt::CaseInsensitive))
            return QUrl::fromPercentEncoding(item.mid(2).replace(QLatin1Char('+'), QLatin1String("%20")).toUtf8());
    }
    return {};
}

/// A position in a form that queries use.
Coordinates queriedPosition(const QString &text)
{
    const Coordinates decimal = formats::readDecimalPosition(text.trimmed());
    return decimal.isValid() ? decimal : formats::readPosition(text).position;
}

/// Reads a query: "POSITION(LABEL)" or a text. Its position takes precedence over the coordinates. A text is the name
/// of the place when the position is known, else an address.
void readQuery(const QString &text, Coordinates &position, QString &name, Address &address)
{
    static const QRegularExpression LABELLED(QStringLiteral(R"(\A([^()]*)\((.*)\)\z)"),
                                             QRegularExpression::DotMatchesEverythingOption);
    const QRegularExpressionMatch match = LABELLED.match(text);
    const Coordinates queried = queriedPosition(match.hasMatch() ? match.captured(1) : text);
    if (queried.isValid()) {
        position.setLatitude(queried.latitude());
        position.setLongitude(queried.longitude());
        name = match.captured(2);
    } else if (position.isValid()) {
        name = text;
    } else {
        address.setLabel(text);
    }
}

void fill(Place &place, const Coordinates &position, const QString &name, const Address &address)
{
    Location location;
    location.setAddress(address);
    if (position.isValid())
        location.setCoordinates(position);
    place.setName(name);
    place.addLocation(location);
}

QString readGeoUri(const QString &uri, Place &place)
{
    formats::ReadPosition read = formats::readGeoUri(uri);
    if (!read.problem.isEmpty())
        return read.problem;
    const QString query = queryText(uri.section(QLatin1Char('#'), 0, 0).section(QLatin1Char('?'), 1));
    // At 0,0 the query is a search text.
    if (!query.isEmpty() && read.position.latitude() == 0 && read.position.longitude() == 0)
        read.position.setLatitude(qQNaN());
    QString name;
    Address address;
    readQuery(query, read.position, name, address);
    fill(place, read.position, name, address);
    return {};
}

/// True for a link of the map web service on any host that contains a position.
bool hasOwnPosition(const QUrl &url)
{
    Place place;
    return Utilities::readMapUrl(url, place) && place.hasCoordinates();
}

QString fillFromSite(const SiteLink &link, Place &place)
{
    if (link.needsNetwork)
        return QStringLiteral("only its site can resolve this link, and the network is not used; open it, and "
                              "give the position or the link of the opened page");
    Coordinates position = link.position;
    QString name = link.name;
    Address address;
    if (!link.text.isEmpty())
        readQuery(link.text, position, name, address);
    if (!link.name.isEmpty())
        name = link.name;
    if (!position.isValid() && address.isEmpty())
        return QStringLiteral("a link of a map web site without a position or an address");
    fill(place, position, name, address);
    return {};
}

QString readMapLink(QString link, Place &place)
{
    // Escapes a "%" that starts no escape; otherwise QUrl would change all other escapes too.
    static const QRegularExpression BARE_PERCENT(QStringLiteral("%(?![0-9A-Fa-f]{2})"));
    const QUrl url(link.replace(BARE_PERCENT, QStringLiteral("%25")));
    if (const SiteLink site = readSiteLink(url); site.isKnown && !hasOwnPosition(url))
        return fillFromSite(site, place);
    if (!url.isValid() || !Utilities::readMapUrl(url, place))
        return QStringLiteral("not a link of the map web service, such as places link prints, nor one of %1")
            .arg(siteNames());
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
    if (!isLink(text)) {
        const formats::ReadPosition read = formats::readPosition(text);
        place.setSource(AbstractPlace::SourceManualInput);
        fill(place, read.position, QString(), Address());
        return read.position.isValid() || !read.problem.isEmpty() ? read.problem : unknownForm();
    }
    place.setSource(AbstractPlace::SourceGeolink);
    return formats::isGeoUri(text) ? readGeoUri(text, place) : readMapLink(text, place);
}

formats::ReadPosition readAnyPosition(const QString &text)
{
    if (!isLink(text))
        return formats::readPosition(text);
    Place place;
    const QString problem = readLink(text, place);
    if (problem.isEmpty() && !place.hasCoordinates())
        return {{}, QStringLiteral("the link gives an address, but no position")};
    return {place.primaryCoordinates(), problem};
}

QString unknownForm()
{
    return QStringLiteral(
               "a position is written as 47.24,8.72, 47°14'24\"N 8°43'12\"E, N 47 14.4 E 8 43.2, 8FVC9G8F+6X "
               "or geo:47.24,8.72, or is a link of %1")
        .arg(siteNames());
}

} // namespace tool
