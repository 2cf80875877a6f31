// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "model/MapLink.h"

#include "model/PlacePrivate.h"
#include "places/PointOfInterestAuxiliaryData.h"

#include <QtCore/QtNumeric>
#include <QtCore/QUrlQuery>

namespace vela::platform::places
{

namespace
{

const QString LATITUDE = QStringLiteral("lat");
const QString LONGITUDE = QStringLiteral("lon");
const QString CENTRE = QStringLiteral("scr_cnt");
const QString SCREEN_SCALE = QStringLiteral("scr_z");
const QString SCALE = QStringLiteral("z");
const QString LABEL = QStringLiteral("label");
const QString ADDRESS_LABEL = QStringLiteral("addrLabel");
const QString DESCRIPTION = QStringLiteral("desc");
const QString STREET = QStringLiteral("address");
const QString CITY = QStringLiteral("city");
const QString REGION = QStringLiteral("region");
const QString COUNTRY = QStringLiteral("country");
const QString POSTAL_CODE = QStringLiteral("postalCode");
const QString PHONE = QStringLiteral("phone");
const QString URL = QStringLiteral("url");
const QString EMAIL = QStringLiteral("email");

QString degrees(double value)
{
    return QString::number(value, 'f', 7);
}

} // namespace

MapLink::MapLink(const AbstractPlacePrivate &place, const Coordinates &position)
    : m_latitude(degrees(position.latitude()))
    , m_longitude(degrees(position.longitude()))
{
    m_items[CENTRE] = QStringLiteral("%1,%2").arg(m_latitude, m_longitude);
    m_items[LABEL] = place.name();
    m_items[DESCRIPTION] = place.description();
    m_items[PHONE] = place.primaryPhoneNumber();
    m_items[URL] = place.primaryUrl().toString();
    m_items[EMAIL] = place.primaryEmailAddress();
}

int MapLink::scaleOf(const Address &address)
{
    constexpr int STREET_SCALE = 4;
    if (!address.street().isEmpty())
        return STREET_SCALE;
    if (!address.city().isEmpty())
        return 6;
    if (!address.region().isEmpty())
        return 12;
    if (!address.country().isEmpty())
        return 15;
    return STREET_SCALE;
}

void MapLink::setScale(int scale)
{
    m_items[SCALE] = m_items[SCREEN_SCALE] = QString::number(scale);
}

void MapLink::setAddressText(const QString &text)
{
    m_items[ADDRESS_LABEL] = text;
    if (m_items[LABEL].isEmpty())
        m_items[LABEL] = text;
}

void MapLink::setAddressParts(const Address &address)
{
    m_items[STREET] = address.street();
    m_items[CITY] = address.city();
    m_items[REGION] = address.region();
    m_items[COUNTRY] = address.country();
    m_items[POSTAL_CODE] = address.postalCode();
}

QUrl MapLink::toUrl() const
{
    QUrl url(QStringLiteral(PLACES_MAP_URL));
    QString query = url.query(QUrl::FullyEncoded);
    if (!query.isEmpty())
        query += QLatin1Char('&');
    query += LATITUDE + QLatin1Char('=') + m_latitude + QLatin1Char('&') + LONGITUDE + QLatin1Char('=') + m_longitude;
    for (auto item = m_items.begin(); item != m_items.end(); ++item) {
        // Percent-encode all but the unreserved characters of RFC 3986.
        if (!item.value().isEmpty())
            query += QLatin1Char('&') + item.key() + QLatin1Char('=')
                     + QString::fromLatin1(QUrl::toPercentEncoding(item.value()));
    }
    url.setQuery(query, QUrl::StrictMode);
    return url;
}

QString PlacePrivate::decodeQuery(const QUrl &url, const QString &key)
{
    QByteArray value = QUrlQuery(url).queryItemValue(key, QUrl::FullyEncoded).toUtf8();
    return QUrl::fromPercentEncoding(value.replace('+', "%20"));
}

void PlacePrivate::decodePlaceFromMapUrl(const QUrl &url, Place &place)
{
    Address address;
    address.setStreet(decodeQuery(url, STREET));
    address.setCity(decodeQuery(url, CITY));
    address.setRegion(decodeQuery(url, REGION));
    address.setCountry(decodeQuery(url, COUNTRY));
    address.setPostalCode(decodeQuery(url, POSTAL_CODE));
    address.setLabel(decodeQuery(url, ADDRESS_LABEL));
    Location location;
    location.setAddress(address);

    const auto number = [&url](const QString &key) {
        bool isNumber = false;
        const double value = QUrlQuery(url).queryItemValue(key).toDouble(&isNumber);
        return isNumber ? value : qQNaN();
    };
    const Coordinates coordinates(number(LATITUDE), number(LONGITUDE));
    if (coordinates.isValid())
        location.setCoordinates(coordinates);

    PointOfInterestAuxiliaryData poi;
    poi.setPhoneNumber(decodeQuery(url, PHONE));
    poi.setEmailAddress(decodeQuery(url, EMAIL));
    poi.setUrl(QUrl(decodeQuery(url, URL)));
    place.addAuxiliaryData(poi);
    place.addLocation(location);

    if (const QString label = decodeQuery(url, LABEL); label != address.label())
        place.setName(label);
    place.setDescription(decodeQuery(url, DESCRIPTION));
}

} // namespace vela::platform::places
