// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "find/Candidates.h"

#include "store/Store.h"
#include "support/RandomFind.h"

#include <gtest/gtest.h>

using namespace finds;

TEST(Candidates, WithTheSameOriginAreOneResult)
{
    StoreShared shared;
    Store store(":memory:", shared);
    const auto make = [](const char *name, const char *tag, const char *externalId) {
        auto place = std::make_shared<Place>();
        place->setName(QLatin1String(name));
        if (*tag)
            place->addTag(QLatin1String(tag));
        AuxiliaryData record(AuxiliaryData::TypePointOfInterest);
        record.setExternalId(QLatin1String(externalId));
        if (externalId != std::string("none"))
            place->addAuxiliaryData(record);
        return place;
    };
    constexpr char TERM[] = "_search-term_";
    Candidates candidates(store, false);
    candidates.add(
        0, {make("cafe", TERM, "none"), make("zurich", TERM, "none"), make("x", "", "none"), make("x", "", "")});
    candidates.add(1, {make("cafe", TERM, "none"), make("x", "", "none"), make("a", "", "1"), make("b", "", "1")});
    EXPECT_EQ(candidates.rows().size(), 6U) << "places without an id are never equal";
    const qint64 first = candidates.rows().front().id();
    EXPECT_TRUE(candidates.wasFoundBy(0, first) && candidates.wasFoundBy(1, first));
    EXPECT_TRUE(candidates.wasFound(first + 5) && !candidates.wasFoundBy(0, first + 5));
    EXPECT_FALSE(candidates.wasFound(first + 6) || candidates.row(first + 6) || candidates.row(1));
}
