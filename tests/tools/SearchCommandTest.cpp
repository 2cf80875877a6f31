// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "support/Client.h"
#include "support/Gazetteer.h"
#include "support/Placesd.h"
#include "support/Session.h"
#include "support/Sources.h"
#include "support/Terminal.h"

#include <gmock/gmock.h>

using testing::HasSubstr;
using testing::Not;

namespace
{

class SearchCommand : public testing::Test
{
protected:
    SearchCommand()
    {
        (void)places("add Zoo --at 47.38,8.57 --tag lbs-favorite");
        (void)places("add Zollhaus --at 47.37,8.53");
    }

    Sources sources;
    Placesd service{sources.arguments()};
};

/// A gazetteer of real places, and three stored places.
class SearchBox : public testing::Test
{
protected:
    SearchBox()
    {
        awaitGazetteer();
        (void)places("add HeathrowShed --at 1,2");
        (void)places("add Qqq1 --at 1,2");
        (void)places("add Qqq2 --at 1,2 --description Other");
    }

    Placesd service{sampleGazetteer()};
};

/// The client with `--as-you-type` on a terminal.
class Typing : public Terminal
{
public:
    explicit Typing(const char *groups = "--group=favourites,remote", const char *kind = "xterm",
                    const char *centre = "--near=47.37,8.54")
        : Terminal([=] {
            ::setenv("TERM", kind, 1);
            ::execl(PROGRAMS "/places", "places", "search", "--as-you-type", groups, centre, nullptr);
        })
    {
        EXPECT_TRUE(shows("Search:"));
    }

    /// Waits for the start of a search and for all its results. A search that starts during another one shows nothing
    /// new, so wait for each.
    bool searches() { return shows("searching") && shows("Up and Down"); }
};

} // namespace

TEST_F(SearchCommand, AnswersAsInTheSession)
{
    NEEDS_VCARDS();
    expectSession("search.txt", service);
}

TEST_F(SearchCommand, AnInterruptEndsASearchWithoutWaitingForTheService)
{
    service.pause();
    QProcess client;
    client.start(QStringLiteral(PROGRAMS "/places"), {QStringLiteral("search"), QStringLiteral("zo")});
    ASSERT_FALSE(client.waitForFinished(500)) << "it waits for the service";
    ::kill(static_cast<pid_t>(client.processId()), SIGINT);
    EXPECT_TRUE(client.waitForFinished(10000));
    EXPECT_EQ(client.exitStatus(), QProcess::CrashExit) << "a shell sees the signal";
    EXPECT_EQ(client.exitCode(), SIGINT);
    service.resume();
}

TEST_F(SearchCommand, TypingSearchesAndAChoiceIsShown)
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

TEST_F(SearchCommand, EveryExitRestoresTheTerminal)
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
        ASSERT_TRUE(typing.shows("searching")) << "no exit waits for the service";
        EXPECT_FALSE(typing.isRestored()) << "otherwise this test checks nothing";
        typing.type(way.keys);
        if (way.signal != 0)
            ::kill(typing.process(), way.signal);
        const int status = typing.wait();
        EXPECT_EQ(WIFSIGNALED(status) ? WTERMSIG(status) : 0, way.endsBySignal);
        EXPECT_TRUE(way.endsBySignal != 0 || WEXITSTATUS(status) == 1) << "nothing was chosen";
        EXPECT_TRUE(typing.isRestored());
        EXPECT_THAT(typing.output(), HasSubstr("\x1b[?2004l\x1b")) << "bracketed paste is off for the shell";
        EXPECT_THAT(typing.output(), HasSubstr("\x1b[?1049l"));
    }
    service.resume();
}

TEST_F(SearchBox, EnterChoosesOnlyFromTheAnswerToTheTypedText)
{
    const struct
    {
        const char *how;
        const char *keys;
        const char *chosen;
    } rows[] = {
        {"a burst, and a later answer that comes first", "heathrow\r", "London Heathrow Airport"},
        {"moves wait as well", "qqq\x1b[B\r", "Qqq2"},
        {"a paste", "\x1b[200~\tlondon\r\nheathrow\n\x1b[201~\r", "London Heathrow Airport"},
        {"in the line", "qqeathro\x01\x1b[3~\x06\x7fh\x05w\r", "London Heathrow Airport"},
        {"arrows",
         "hethrow\x1b[H\x1b[C\x1bOC\x1b[C\x02"
         "a\x1b[F\r",
         "London Heathrow Airport"},
        {"clusters",
         "he\xcc\x81x\x1b[D\x7f"
         "eathrow\x1b[3~\r",
         "London Heathrow Airport"},
        {"halves of a flag that an erasure joins", "\xf0\x9f\x87\xa8x\xf0\x9f\x87\xad\x1b[D\x7f\x7fheathrow\r",
         "London Heathrow Airport"},
        {"wide characters and words", "a \xe4\xb8\x96\xe7\x95\x8c\x01\x17\x1b[4~\x17\x15heathrow\r",
         "London Heathrow Airport"},
    };
    for (const auto &row : rows) {
        Typing typing("--group=suggestions,local");
        ASSERT_TRUE(typing.searches()) << row.how;
        typing.type(row.keys);
        EXPECT_EQ(typing.wait(), 0) << row.how;
        EXPECT_THAT(typing.output(), HasSubstr(std::string("Name          ") + row.chosen + "\r\n")) << row.how;
    }
}

TEST_F(SearchBox, FurtherTypingCancelsAWaitingEnter)
{
    Typing typing("--group=suggestions");
    service.pause();
    typing.type("heathrow\r");
    ASSERT_TRUE(typing.shows("Enter waits"));
    typing.type("9"); // not a letter, which would count as a typing error
    service.resume();
    ASSERT_TRUE(typing.shows("nothing found"));
    typing.type("\x7f");
    ASSERT_TRUE(typing.searches());
    typing.type("\r");
    EXPECT_EQ(typing.wait(), 0);
}

TEST_F(SearchBox, ACategoryLeadsToItsPlacesNearTheCentreAndBack)
{
    Typing typing("--group=category-suggestions", "xterm", "--near=51.47,-0.45");
    typing.type("large\r");
    ASSERT_TRUE(typing.shows("goes"));
    typing.type("\x0c");
    EXPECT_TRUE(typing.shows("Category: large airport near 51.47,-0.45"));
    typing.type("\x1b");
    ASSERT_TRUE(typing.shows("leaves"));
    typing.type("\x0c");
    EXPECT_TRUE(typing.shows("Search: large")) << "back at the text";
    EXPECT_TRUE(typing.shows("category"));
    typing.type("\x13");
    EXPECT_TRUE(typing.shows("only places can be saved"));
    typing.type("\r\x13"); // the category, and the first place of it
    EXPECT_EQ(typing.wait(), 0);
    EXPECT_THAT(typing.output(), HasSubstr("saved London Heathrow Airport"));
    EXPECT_THAT(places("find heathrow air").out, HasSubstr("London Heathrow Airport"));
}

TEST_F(SearchBox, NamesakesDifferInFortyColumns)
{
    Typing typing("--group=remote");
    typing.resize(20, 40);
    ASSERT_TRUE(typing.searches());
    typing.type("springfield");
    ASSERT_TRUE(typing.searches());
    for (const char *region : {"Missouri", "Massachusetts", "Illinois", "Oregon", "Ohio"})
        EXPECT_THAT(typing.output(), HasSubstr(region));
}

TEST_F(SearchBox, ATerminalWithoutACursorIsServedByLines)
{
    Typing typing("--group=local,suggestions", "dumb");
    typing.type("heathrow\n");
    EXPECT_TRUE(typing.shows("  2.   London Heathrow Airport"));
    typing.type("qqq\n");
    EXPECT_TRUE(typing.shows("  2.   Qqq2 (Other)"));
    typing.type("2\n");
    EXPECT_EQ(typing.wait(), 0);
    EXPECT_THAT(typing.output(), HasSubstr("Name          Qqq2\r\n"));
    EXPECT_THAT(typing.output(), Not(HasSubstr("\x1b")));

    const QByteArray lines("99\n\nheathrow\n\n");
    EXPECT_THAT(places("--json search --as-you-type", lines).out, HasSubstr("HeathrowShed")) << "no terminal at all";
    EXPECT_EQ(places("search --as-you-type", "qqq\n+2\n").out, "Qqq2 is stored already, as place 3\n");
    EXPECT_EQ(places("search --as-you-type", "heathrow").status, 1) << "the end of the input chooses nothing";
}

TEST_F(SearchCommand, ProvidersReturnRecordsOfAPlace)
{
    EXPECT_EQ(places(QStringList{QStringLiteral("import"), sources.gazetteer()}).out,
              "3 imported, 0 skipped, 0 failed\n");
    // An import assigns ids in any order.
    const QString id = QString::fromStdString(places("find Zürich").out).simplified().section(QLatin1Char(' '), 0, 0);
    EXPECT_THAT(places(QStringList{QStringLiteral("--json"), QStringLiteral("show"), id, QStringLiteral("--aux"),
                                   QStringLiteral("--remote")})
                    .out,
                HasSubstr("\"externalId\":\"town:1\""));
}
