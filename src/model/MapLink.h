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

/// Puts together the link that shows a place on the map web service.
class MapLink
{
public:
    /// A link to a place at a valid position, with its name, description and primary values.
    MapLink(const AbstractPlacePrivate &place, const Coordinates &position);

    /// The scale that suits how much of an address is known.
    static int scaleOf(const Address &address);

    void setScale(int scale);
    /// The address as one line; it stands in for the name of a place that has none.
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
