// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/Coordinates.h>

#include <QtCore/QString>
#include <QtCore/QUrl>

namespace tool
{

/// What a link of a map web site says.
struct SiteLink
{
    bool isKnown = false;      ///< Its site is known.
    bool needsNetwork = false; ///< Only its site knows what it leads to.
    vela::platform::places::Coordinates position;
    QString name = {}; ///< Of the place.
    QString text = {}; ///< What the link searches for: a position, a name or an address.
};

/// Reads a link of a map web site by what its address says. No network is used.
SiteLink readSiteLink(const QUrl &url);

/// The names of the sites whose links are read, for people.
QString siteNames();

} // namespace tool
