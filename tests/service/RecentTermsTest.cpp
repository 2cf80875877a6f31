// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "places/InternalPlaceManager.h"
#include "places/Place.h"
#include "places/PlaceHeader.h"
#include "places/PlaceManager.h"
#include "places/PlaceStorageManager.h"
#include "places/PlaceStorageReply.h"
#include "support/EventLoop.h"
#include "support/Placesd.h"

#include <gtest/gtest.h>

#include <QtTest/QSignalSpy>

using namespace vela::platform::places;

TEST(RecentTermsTest, FetchingOrUsingAFoundPlaceMakesItsTermRecent)
{
    const Placesd service;
    const EventLoop loop;
    const PlaceManager manager;
    Error::Type error = Error::Unspecified;
    Place place;
    Location location;
    location.setCoordinates(Coordinates(46, 7));
    place.addLocation(location);
    place.setName(QString::fromUtf8("Zürich 駅?"));
    ASSERT_EQ(manager.addPlace(&place), Error::Success);
    const auto fetch = [&](PlaceHeader &header) { EXPECT_TRUE(std::unique_ptr<Place>(manager.getPlace(&header))); };
    const auto fetchLater = [](PlaceHeader &header) {
        PlaceStorageManager storage;
        QSignalSpy finished(&storage, &PlaceStorageManager::finished);
        storage.getPlace(header);
        EXPECT_TRUE(EventLoop::runUntil([&] { return !finished.isEmpty(); }));
    };
    const auto use = [&](PlaceHeader &header) { EXPECT_EQ(manager.usePlace(&header), Error::Success); };
    const struct
    {
        QString term;
        std::function<void(PlaceHeader &)> work;
        bool isKept;
    } rows[] = {
        {QStringLiteral("zu"), fetchLater, true},
        {QStringLiteral("zur"), fetch, true},
        {QString::fromUtf8("zürich"), use, true},
        {QString::fromUtf8("駅"), use, true},
        {QString::fromUtf8("zurich 駅"), fetch, false}, // A fetch contains ISO 8859-1 text.
        {QStringLiteral("zuri"), [](PlaceHeader &) {}, false},
        {QString(), fetch, false},
    };
    QStringList kept;
    for (const auto &row : rows) {
        const QList<PlaceHeader *> found = manager.findPlaces(row.term, &error);
        ASSERT_EQ(found.size(), 1) << row.term.toStdString();
        row.work(*found.first());
        EXPECT_EQ(found.first()->id(), place.id());
        qDeleteAll(found);
        if (row.isKept)
            kept.prepend(row.term);
        EXPECT_EQ(InternalPlaceManager().getRecentSearchTerms(&error), kept) << row.term.toStdString();
    }
}
