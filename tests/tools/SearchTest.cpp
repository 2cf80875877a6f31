// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "support/Client.h"
#include "support/Placesd.h"
#include "support/Sources.h"
#include "support/Terminal.h"

#include <gmock/gmock.h>

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

using testing::HasSubstr;
using testing::Not;

namespace
{

class SearchTest : public testing::Test
{
protected:
    SearchTest()
    {
        (void)places("add Zoo --at 47.38,8.57 --tag lbs-favorite");
        (void)places("add Zollhaus --at 47.37,8.53");
    }

    Sources sources;
    Placesd service{sources.arguments()};
};

constexpr char GROUPS[] = "--group=favourites,remote";

/// The client, with a search as you type, on a terminal.
class Typing : public Terminal
{
public:
    Typing()
        : Terminal([] { ::execl(PROGRAMS "/places", "places", "search", "--as-you-type", GROUPS, nullptr); })
    {
        EXPECT_TRUE(shows("Search:"));
    }

    /// Waits until a search has begun and all its results have come. One that begins while another goes on shows
    /// nothing new, so each has to be waited for.
    bool searches() { return shows("searching") && shows("Up and Down"); }
};

} // namespace

TEST_F(SearchTest, EachGroupComesUnderItsTitleAndOnlyThoseWithResults)
{
    const Outcome found = places("search zo --group local --group contacts,remote");
    EXPECT_EQ(found.status, 0);
    EXPECT_THAT(found.out, HasSubstr("On this device\n"));
    EXPECT_THAT(found.out, HasSubstr("Zollhaus"));
    EXPECT_THAT(found.out, HasSubstr("Contacts\n          Zoe"));
    EXPECT_THAT(found.out, Not(HasSubstr("Elsewhere")));
    EXPECT_THAT(places("search zo --no-favourites").out, Not(HasSubstr("Zoo")));
    EXPECT_THAT(places("search zz").err, HasSubstr("nothing found"));
    const Outcome failed = places("search zo --no-favourites --group favourites,local");
    EXPECT_THAT(failed.err, HasSubstr("favourites: "));
    EXPECT_THAT(failed.out, HasSubstr("Zollhaus")) << "the others are still shown";
    EXPECT_THAT(places("search z --group Remote --limit 1").out, HasSubstr("Elsewhere, the first 1\n"));
}

TEST_F(SearchTest, ProgramsGetOneDocumentWithTheGroupsInTheOrderTheyAskedFor)
{
    const Outcome found = places("--json search zo --group suggestions,local --limit 1");
    const QJsonArray groups =
        QJsonDocument::fromJson(QByteArray::fromStdString(found.out))[QLatin1String("groups")].toArray();
    ASSERT_EQ(groups.size(), 2) << found.out;
    EXPECT_EQ(groups[0].toObject()[QLatin1String("group")], QLatin1String("suggestions"));
    const QJsonObject local = groups[1].toObject();
    EXPECT_EQ(local[QLatin1String("type")], QLatin1String("FeatureCollection"));
    EXPECT_EQ(local[QLatin1String("hasMore")], true);
    EXPECT_EQ(local[QLatin1String("features")].toArray().size(), 1);
}

TEST_F(SearchTest, AnInterruptEndsASearchAtOnceWhateverTheServiceOwes)
{
    service.pause();
    QProcess client;
    client.start(QStringLiteral(PROGRAMS "/places"), {QStringLiteral("search"), QStringLiteral("zo")});
    EXPECT_FALSE(client.waitForFinished(500)) << "it waits for the service";
    ::kill(static_cast<pid_t>(client.processId()), SIGINT);
    EXPECT_TRUE(client.waitForFinished(10000));
    EXPECT_EQ(client.exitStatus(), QProcess::CrashExit) << "a shell shall see that it was a signal";
    EXPECT_EQ(client.exitCode(), SIGINT);
    service.resume();
}

TEST_F(SearchTest, WhatIsTypedIsSearchedAndWhatIsChosenIsShown)
{
    Typing typing;
    ASSERT_TRUE(typing.searches());
    typing.type("quite wrong\x15zo\xc3"); // erased as a line, and half a letter
    ASSERT_TRUE(typing.searches());
    typing.type("\xbc\x7f\x7f"); // its other half, and two letters erased
    ASSERT_TRUE(typing.searches());
    typing.type("\x1b[B\x1bOB\x1bOB\x1b[A\x1b[99~\x1bx\r"); // arrows in both spellings, and keys that mean nothing
    EXPECT_EQ(typing.wait(), 0);
    const std::string output = typing.output();
    EXPECT_THAT(output.substr(output.rfind("\x1b[?1049l")), HasSubstr("Category      city"));
    EXPECT_TRUE(typing.isRestored());
}

TEST_F(SearchTest, EveryWayOutLeavesTheTerminalAsItWas)
{
    const struct
    {
        const char *keys;
        int signal; ///< Sent if not 0.
        int endsBySignal;
    } ways[] = {{"\x1b", 0, 0}, {"\x03", 0, SIGINT}, {"z", SIGTERM, SIGTERM}};
    service.pause();
    for (const auto &way : ways) {
        Typing typing;
        ASSERT_TRUE(typing.shows("searching")) << "and no way out waits for the service";
        EXPECT_FALSE(typing.isRestored()) << "or this test says nothing";
        typing.type(way.keys);
        if (way.signal != 0)
            ::kill(typing.process(), way.signal);
        const int status = typing.wait();
        EXPECT_EQ(WIFSIGNALED(status) ? WTERMSIG(status) : 0, way.endsBySignal);
        EXPECT_TRUE(way.endsBySignal != 0 || WEXITSTATUS(status) == 1) << "nothing was chosen";
        EXPECT_TRUE(typing.isRestored());
        EXPECT_THAT(typing.output(), HasSubstr("\x1b[?1049l"));
    }
    service.resume();
}

TEST_F(SearchTest, ContactsAreListedAndProvidersAskedForWhatTheyKnowOfAPlace)
{
    const std::string all = places("contacts").out;
    EXPECT_LT(all.find("Anna"), all.find("Zoe")) << all;
    EXPECT_THAT(places("contacts zo").out, Not(HasSubstr("Anna")));
    EXPECT_THAT(places("--json providers").out, HasSubstr("\"supportedDataTypes\":[\"poi\"]"));
    EXPECT_EQ(places(QStringList{QStringLiteral("import"), sources.gazetteer()}).out,
              "3 imported, 0 skipped, 0 failed\n");
    // An import gives ids in no particular order.
    const QString id = QString::fromStdString(places("find Zürich").out).simplified().section(QLatin1Char(' '), 0, 0);
    EXPECT_THAT(places(QStringList{QStringLiteral("--json"), QStringLiteral("show"), id, QStringLiteral("--aux"),
                                   QStringLiteral("--remote")})
                    .out,
                HasSubstr("\"externalId\":\"town:1\""));
}
