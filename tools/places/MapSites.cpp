// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "MapSites.h"

#include "formats/Position.h"

#include <QtCore/QRegularExpression>
#include <QtCore/QStringList>
#include <QtCore/QUrlQuery>

namespace tool
{

using vela::platform::places::Coordinates;

namespace
{

enum class Part
{
    Path,
    Query, ///< The values of some keys, joined with commas.
    Fragment,
};

/// Meaning of the groups of a pattern.
enum class Gives
{
    LatLon, ///< Latitude and longitude; a third group is a name.
    LonLat,
    Degrees, ///< A position with letters for the hemispheres and underscores for blanks.
    Text,    ///< A search text, which may be a position.
    Name,
    Network, ///< Nothing: the site would have to be asked.
};

/// Where a value is in a link. Parts are matched after decoding: no percent escapes, and blanks for plus signs.
struct Pattern
{
    const char *site;
    const char *host; ///< Regular expression for the whole host, or for the host and the beginning of the path.
    Part part;
    const char *keys; ///< Keys of Query, separated by commas.
    const char *text; ///< Regular expression for the part of the link.
    Gives gives;
};

/// Replaces NUMBER in the patterns.
constexpr char DECIMAL[] = R"(([+-]?\d{1,3}(?:\.\d+)?))";
constexpr char PAIR[] = R"(^(?:ll\.)?\s*NUMBER\s*[,~]\s*NUMBER(?![\d.]))";
constexpr char ALL[] = "(?s)^(?:loc:)?(.+)$";

constexpr char OSM[] = R"((?:www\.)?(?:openstreetmap\.org|osm\.org))";
constexpr char GOOGLE[] = R"((?:www\.)?google\.[a-z]{2,3}(?:\.[a-z]{2})?/maps|maps\.google\.[a-z]{2,3}(?:\.[a-z]{2})?)";
constexpr char APPLE[] = R"(maps\.apple\.com)";
constexpr char BING[] = R"((?:www\.)?bing\.com/maps)";
constexpr char HERE[] = R"((?:share|wego|www|maps)\.here\.com)";
constexpr char WAZE[] = R"((?:www\.|ul\.|embed\.)?waze\.com)";
constexpr char YANDEX[] = R"((?:www\.)?yandex\.[a-z]{2,3}(?:\.[a-z]{2})?/maps|maps\.yandex\.[a-z]{2,3}(?:\.[a-z]{2})?)";
constexpr char MAPY[] = R"((?:[a-z]+\.)?mapy\.(?:cz|com))";
constexpr char GEOHACK[] = R"(geohack\.toolforge\.org)";
constexpr char OSMAND[] = R"((?:www\.)?osmand\.net)";
constexpr char SHORTENED[] =
    R"((?:goo\.gl|maps\.app\.goo\.gl|g\.page|g\.co|maps\.apple|her\.is|binged\.it|bit\.ly|t\.co|tinyurl\.com))";
constexpr char WORDS[] = R"((?:www\.|map\.)?what3words\.com|w3w\.co)";

/// The known links. The first matching pattern for a value is used: the place itself comes before the middle of the
/// map.
constexpr Pattern PATTERNS[] = {
    {"OpenStreetMap", OSM, Part::Path, "", "^/go/", Gives::Network},
    {"OpenStreetMap", OSM, Part::Query, "mlat,mlon", PAIR, Gives::LatLon},
    {"OpenStreetMap", OSM, Part::Query, "query", ALL, Gives::Text},
    {"OpenStreetMap", OSM, Part::Fragment, "", R"((?:^|&)map=[\d.]+/NUMBER/NUMBER)", Gives::LatLon},
    {"Google Maps", GOOGLE, Part::Path, "", R"(^.*!3dNUMBER!4dNUMBER)", Gives::LatLon},
    {"Google Maps", GOOGLE, Part::Query, "query", ALL, Gives::Text},
    {"Google Maps", GOOGLE, Part::Query, "q", ALL, Gives::Text},
    {"Google Maps", GOOGLE, Part::Query, "destination", ALL, Gives::Text},
    {"Google Maps", GOOGLE, Part::Query, "daddr", ALL, Gives::Text},
    {"Google Maps", GOOGLE, Part::Path, "", R"(^/maps/(?:place|search)/([^/@]+))", Gives::Text},
    {"Google Maps", GOOGLE, Part::Query, "ll", PAIR, Gives::LatLon},
    {"Google Maps", GOOGLE, Part::Query, "center", PAIR, Gives::LatLon},
    {"Google Maps", GOOGLE, Part::Query, "viewpoint", PAIR, Gives::LatLon},
    {"Google Maps", GOOGLE, Part::Path, "", R"(/@NUMBER,NUMBER)", Gives::LatLon},
    {"Apple Maps", APPLE, Part::Query, "ll", PAIR, Gives::LatLon},
    {"Apple Maps", APPLE, Part::Query, "coordinate", PAIR, Gives::LatLon},
    {"Apple Maps", APPLE, Part::Query, "name", ALL, Gives::Name},
    {"Apple Maps", APPLE, Part::Query, "q", ALL, Gives::Text},
    {"Apple Maps", APPLE, Part::Query, "address", ALL, Gives::Text},
    {"Apple Maps", APPLE, Part::Query, "daddr", ALL, Gives::Text},
    {"Apple Maps", APPLE, Part::Query, "sll", PAIR, Gives::LatLon},
    {"Bing Maps", BING, Part::Query, "sp", R"(^point\.NUMBER_NUMBER(?:_([^_~]+))?)", Gives::LatLon},
    {"Bing Maps", BING, Part::Query, "where1", ALL, Gives::Text},
    {"Bing Maps", BING, Part::Query, "q", ALL, Gives::Text},
    {"Bing Maps", BING, Part::Query, "cp", PAIR, Gives::LatLon},
    {"HERE WeGo", HERE, Part::Path, "", R"(^/l/NUMBER,NUMBER(?:,([^,]+))?)", Gives::LatLon},
    {"HERE WeGo", HERE, Part::Query, "map", PAIR, Gives::LatLon},
    {"Waze", WAZE, Part::Query, "ll", PAIR, Gives::LatLon},
    {"Waze", WAZE, Part::Query, "to", PAIR, Gives::LatLon},
    {"Waze", WAZE, Part::Query, "q", ALL, Gives::Text},
    {"Yandex Maps", YANDEX, Part::Path, "", "^/maps/-/", Gives::Network},
    {"Yandex Maps", YANDEX, Part::Query, "pt", PAIR, Gives::LonLat},
    {"Yandex Maps", YANDEX, Part::Query, "whatshere[point]", PAIR, Gives::LonLat},
    {"Yandex Maps", YANDEX, Part::Query, "text", ALL, Gives::Text},
    {"Yandex Maps", YANDEX, Part::Query, "ll", PAIR, Gives::LonLat},
    {"Mapy.com", MAPY, Part::Path, "", "^/s/", Gives::Network},
    {"Mapy.com", MAPY, Part::Query, "x,y", PAIR, Gives::LonLat},
    {"GeoHack", GEOHACK, Part::Query, "params", R"(^([\d._]+_[NS]_[\d._]+_[EW]))", Gives::Degrees},
    {"GeoHack", GEOHACK, Part::Query, "pagename", ALL, Gives::Name},
    {"OsmAnd", OSMAND, Part::Query, "pin", PAIR, Gives::LatLon},
    {"", SHORTENED, Part::Path, "", "", Gives::Network},
    {"", WORDS, Part::Path, "", "", Gives::Network},
};

/// The decoded part of a link that a pattern matches.
QString partOf(const QUrl &url, const Pattern &pattern)
{
    const QUrl::ComponentFormattingOptions encoded = QUrl::FullyEncoded;
    if (pattern.part != Part::Query) {
        const QString text = pattern.part == Part::Path ? url.path(encoded) : url.fragment(encoded);
        return QUrl::fromPercentEncoding(text.toUtf8().replace('+', "%20"));
    }
    QString query = url.query(encoded);
    const QUrlQuery items(query.replace(QLatin1Char('+'), QLatin1String("%20")));
    QStringList values;
    const QStringList keys = QString::fromLatin1(pattern.keys).split(QLatin1Char(','));
    for (const QString &key : keys)
        values.append(items.queryItemValue(key, QUrl::FullyDecoded));
    return values.join(QLatin1Char(','));
}

QRegularExpressionMatch match(const QString &pattern, const QString &text)
{
    return QRegularExpression(QString(pattern).replace(QLatin1String("NUMBER"), QLatin1String(DECIMAL))).match(text);
}

bool isOfSite(const QUrl &url, const Pattern &pattern)
{
    const QString host = QStringLiteral("^(?:%1)(?:/|$)").arg(QLatin1String(pattern.host));
    return match(host, url.host() + url.path()).hasMatch();
}

QString withBlanks(QString text)
{
    return text.replace(QLatin1Char('_'), QLatin1Char(' '));
}

void setPosition(SiteLink &link, const Coordinates &position)
{
    if (position.isValid() && !link.position.isValid())
        link.position = position;
}

void take(SiteLink &link, const Pattern &pattern, const QRegularExpressionMatch &found)
{
    const auto number = [&found](int i) { return found.captured(i).toDouble(); };
    switch (pattern.gives) {
    case Gives::LatLon:
        setPosition(link, Coordinates(number(1), number(2)));
        if (link.name.isEmpty())
            link.name = found.captured(3);
        break;
    case Gives::LonLat:
        setPosition(link, Coordinates(number(2), number(1)));
        break;
    case Gives::Degrees:
        setPosition(link, formats::readPosition(withBlanks(found.captured(1))).position);
        break;
    case Gives::Text:
        if (link.text.isEmpty())
            link.text = found.captured(1);
        break;
    case Gives::Name:
        link.name = withBlanks(found.captured(1));
        break;
    case Gives::Network:
        link.needsNetwork = true;
        break;
    }
}

} // namespace

SiteLink readSiteLink(const QUrl &url)
{
    SiteLink link;
    for (const Pattern &pattern : PATTERNS) {
        if (!isOfSite(url, pattern))
            continue;
        link.isKnown = true;
        if (const auto found = match(QLatin1String(pattern.text), partOf(url, pattern)); found.hasMatch())
            take(link, pattern, found);
    }
    return link;
}

QString siteNames()
{
    QStringList names;
    for (const Pattern &pattern : PATTERNS) {
        if (pattern.site[0] && !names.contains(QLatin1String(pattern.site)))
            names.append(QLatin1String(pattern.site));
    }
    return names.join(QStringLiteral(", "));
}

} // namespace tool
