// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/Coordinates.h>

#include <QtCore/QString>
#include <QtCore/QUrl>

namespace tool
{

/// The content of a link of a map web site.
struct SiteLink
{
    bool isKnown = false;      ///< The site is in the table.
    bool needsNetwork = false; ///< Only the site can resolve the link.
    vela::platform::places::Coordinates position;
    QString name = {}; ///< Name of the place.
    QString text = {}; ///< The search text of the link: a position, a name or an address.
};

/// Parses a link of a map web site. Uses no network.
SiteLink readSiteLink(const QUrl &url);

/// The names of the known sites, for people.
QString siteNames();

} // namespace tool
