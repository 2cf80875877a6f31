// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "support/Client.h"
#include "support/Gazetteer.h"
#include "support/Placesd.h"

#include <gmock/gmock.h>

using testing::HasSubstr;
using testing::StartsWith;

TEST(SearchBoxExample, PrintsNothingOfASearchThatWasReplacedAndSaysWhatFailed)
{
    Placesd service(sampleGazetteer());
    awaitGazetteer();
    places("add Zurichsee --at 47.25,8.7");
    // In one piece, which is read at once: no result can come between the lines.
    const Outcome outcome = run("search_box", {}, "gen\nzur\nzurich\n");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_THAT(outcome.out, StartsWith("> gen\n> zur\n> zurich\n"));
    EXPECT_THAT(outcome.out, HasSubstr("Your places\n  Zurichsee - "));
    EXPECT_THAT(outcome.out, HasSubstr("Suggestions\n  Zürich - Zürich, Zurich, Switzerland\n"));
    EXPECT_EQ(outcome.out.find("Gen"), std::string::npos) << outcome.out;

    service.kill();
    const Outcome failed = run("search_box", {}, "zur"); // a line without its end
    EXPECT_EQ(failed.status, 1);
    EXPECT_THAT(failed.out, HasSubstr("> zur\nYour places: no places service is running\n"));
}
