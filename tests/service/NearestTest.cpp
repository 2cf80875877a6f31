// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "store/Nearest.h"
#include "places/Coordinates.h"
#include "places/Utilities.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <random>
#include <vector>

using namespace placesd;
using vela::platform::places::Coordinates;
using vela::platform::places::Utilities;

namespace
{

Coordinates clusterCentre(int i)
{
    return Coordinates(-60 + 24 * i, -179.99 + 71.998 * i);
}

/// Points in the whole world, in clusters of a few kilometres, at the 180th meridian and at the poles; some are there
/// twice.
std::vector<Coordinates> manyPoints()
{
    std::mt19937 random(19);
    const auto between = [&random](double low, double high) {
        return std::uniform_real_distribution<double>(low, high)(random);
    };
    std::vector<Coordinates> points = {{90, 0}, {90, 77}, {-90, 0}, {-90, -180}, {0, 180}, {0, -180}, {51, 180}};
    for (int i = 0; i < 800; ++i) {
        const Coordinates cluster = clusterCentre(i % 6);
        points.emplace_back(between(-90, 90), between(-180, 180));
        points.emplace_back(cluster.latitude() + between(-.02, .02), cluster.longitude() + between(-.01, .01));
        points.emplace_back(between(-90, 90), i % 2 ? between(179.9999, 180) : between(-180, -179.9999));
        points.emplace_back(i % 2 ? between(89.9, 90) : between(-90, -89.9), between(-180, 180));
        if (i % 2 == 0)
            points.push_back(points[points.size() - 2 - static_cast<std::size_t>(i % 4)]);
    }
    return points;
}

} // namespace

TEST(Nearest, GivesEveryRowOnceAndNoneAfterOneThatIsFarther)
{
    const std::vector<Coordinates> points = manyPoints();
    SQLite::Database database(":memory:", SQLite::OPEN_READWRITE);
    registerNearest(database);
    database.exec("CREATE VIRTUAL TABLE position USING rtree(id, south, north, west, east)");
    SQLite::Statement add(database, "INSERT INTO position VALUES (?1, ?2, ?2, ?3, ?3)");
    for (std::size_t i = 0; i < points.size(); ++i) {
        add.bind(1, static_cast<int64_t>(i));
        add.bind(2, points[i].latitude());
        add.bind(3, points[i].longitude());
        add.exec();
        add.reset();
    }
    SQLite::Statement walk(database, "SELECT id FROM position WHERE id MATCH nearest(?1, ?2)");
    std::vector<Coordinates> centres = {{0, 180},   {12, -180},   {-40, 179.99999}, {90, 0},       {-90, 180},
                                        {89.95, 3}, {-89.9, -60}, {0, 0},           {47.37, 8.54}, clusterCentre(0)};
    centres.insert(centres.end(), {clusterCentre(2), clusterCentre(5), points[9], points[2000]});
    for (const Coordinates &centre : centres) {
        for (const bool isMirrored : {false, true}) {
            const Coordinates from = isMirrored ? antipodeOf(centre) : centre;
            walk.reset();
            walk.bind(1, from.latitude());
            walk.bind(2, from.longitude());
            std::vector<bool> found(points.size());
            double farthest = 0;
            while (walk.executeStep()) {
                const auto id = static_cast<std::size_t>(walk.getColumn(0).getInt64());
                ASSERT_FALSE(found[id]) << id;
                found[id] = true;
                const double distance = Utilities::calculateDistanceInMeter(centre, points[id]);
                const double passed = isMirrored ? 6371009 * 3.14159265358979 - distance : distance;
                ASSERT_GE(passed, farthest - NEAREST_SLACK)
                    << centre.latitude() << " " << centre.longitude() << " " << isMirrored << " " << id;
                farthest = std::max(farthest, passed);
            }
            EXPECT_EQ(std::count(found.begin(), found.end(), false), 0);
        }
    }
    for (const auto &[latitude, longitude] : {std::pair(91., 0.), std::pair(0., HUGE_VAL)}) {
        walk.tryReset();
        walk.bind(1, latitude);
        walk.bind(2, longitude);
        EXPECT_THROW(walk.executeStep(), SQLite::Exception) << "no position";
    }
}
