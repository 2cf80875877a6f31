// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "support/Client.h"
#include "support/Gazetteer.h"
#include "support/Placesd.h"

#include <gmock/gmock.h>

using testing::HasSubstr;
using testing::StartsWith;

namespace
{

/// What a program prints until `text` comes.
QByteArray readUntil(QProcess &program, const QByteArray &text)
{
    QByteArray read;
    while (!read.contains(text) && program.waitForReadyRead(30000))
        read += program.readAllStandardOutput();
    EXPECT_TRUE(read.contains(text)) << read.constData();
    return read;
}

} // namespace

TEST(SearchBox, PrintsNothingOfASearchThatWasReplaced)
{
    const Placesd service(sampleGazetteer());
    places("add Zurichsee --at 47.25,8.7");
    const Outcome outcome = run("search_box", {}, "gen\nzur\nzurich"); // the last line without its end
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_THAT(outcome.out, StartsWith("> gen\n> zur\n> zurich\n"));
    EXPECT_THAT(outcome.out, HasSubstr("Your places\n  Zurichsee - "));
    EXPECT_THAT(outcome.out, HasSubstr("Suggestions\n  Zürich - Zürich, Zurich, Switzerland\n"));
    EXPECT_EQ(outcome.out.find("Gen"), std::string::npos) << outcome.out;
}

TEST(SearchBox, AnswersALineWhileTheNextIsNotThereYet)
{
    const Placesd service(sampleGazetteer());
    QProcess box;
    box.start(QStringLiteral(PROGRAMS "/search_box"), QStringList());
    box.write("zur\ngene");
    EXPECT_THAT(readUntil(box, "Suggestions\n").toStdString(), HasSubstr("> zur\n"));
    box.write("va\n");
    EXPECT_THAT(readUntil(box, "Geneva Cointrin").toStdString(), HasSubstr("> geneva\n"));
    box.closeWriteChannel();
    ASSERT_TRUE(box.waitForFinished(30000));
    EXPECT_EQ(box.exitCode(), 0);
}

TEST(SearchBox, SaysWhatFailedAndEnds)
{
    Placesd service;
    service.kill();
    const Outcome outcome = run("search_box", {}, "zur\n");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.out, HasSubstr("Your places: failed with error 9\n"));
    EXPECT_THAT(outcome.out, HasSubstr("Suggestions: failed with error 9\n"));
    EXPECT_EQ(run("search_box", {}).status, 0) << "nothing was searched for";
}
