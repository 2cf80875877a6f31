// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "places/Address.h"
#include "places/Coordinates.h"

#include <QtCore/QMap>
#include <QtCore/QString>
#include <QtCore/QUrl>

namespace vela::platform::places
{

class AbstractPlacePrivate;

/// Builds the link that shows a place on the map web service.
class MapLink
{
public:
    /// A link to a valid position, with the name, description and primary values of the place.
    MapLink(const AbstractPlacePrivate &place, const Coordinates &position);

    /// The map scale for the precision of an address.
    static int scaleOf(const Address &address);

    void setScale(int scale);
    /// Sets the address as one line; also used as the name of a place without a name.
    void setAddressText(const QString &text);
    /// Street, city, region, country and postal code.
    void setAddressParts(const Address &address);

    [[nodiscard]] QUrl toUrl() const;

private:
    QString m_latitude;
    QString m_longitude;
    QMap<QString, QString> m_items;
};

} // namespace vela::platform::places
