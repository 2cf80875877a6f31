// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "support/Client.h"
#include "support/Placesd.h"
#include "support/Sources.h"
#include "support/Terminal.h"

#include <gmock/gmock.h>

#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

#include <cstring>

#include <sys/socket.h>
#include <sys/un.h>

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

/// A service that takes connections and never answers.
class MuteService
{
public:
    MuteService()
    {
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        const QByteArray path = QFile::encodeName(m_folder.filePath(QStringLiteral("places")));
        EXPECT_LT(static_cast<std::size_t>(path.size()), sizeof address.sun_path);
        std::memcpy(address.sun_path, path.constData(), static_cast<std::size_t>(path.size()));
        EXPECT_EQ(::bind(m_socket, reinterpret_cast<sockaddr *>(&address), sizeof address), 0);
        EXPECT_EQ(::listen(m_socket, 10), 0);
        qputenv("VELA_CHANNEL_DIR", QFile::encodeName(m_folder.path()));
    }
    ~MuteService() { ::close(m_socket); }

    /// Waits until a request has come.
    void waitForRequest() const
    {
        for (;;) {
            const int connection = ::accept(m_socket, nullptr, nullptr);
            char byte = 0;
            if (::read(connection, &byte, 1) == 1)
                return; // and the connection stays as it is
            ::close(connection);
        }
    }

private:
    QTemporaryDir m_folder;
    const int m_socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
};

/// The client, with a search as you type, on a terminal.
class Typing : public Terminal
{
public:
    explicit Typing(const char *option = "--group=local,remote")
        : Terminal([option] { ::execl(PROGRAMS "/places", "places", "search", "--as-you-type", option, nullptr); })
    {
        EXPECT_TRUE(shows("Search:"));
    }

    /// Waits until a search has begun and all its results have come. One that begins while another goes on shows
    /// nothing new, so each has to be waited for.
    bool searches() { return shows("searching") && shows("Up and Down"); }
};

std::string afterTheScreen(const std::string &output)
{
    return output.substr(output.rfind("\x1b[?1049l"));
}

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
    EXPECT_THAT(places("search z --group Remote --limit 1").out, HasSubstr("Elsewhere, the first 1\n"));
    EXPECT_EQ(places("search z --group everything").status, 2);
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

TEST_F(SearchTest, AGroupThatFailsIsNamedAndTheOthersAreStillShown)
{
    const Outcome found = places("search zo --no-favourites --group favourites,local");
    EXPECT_EQ(found.status, 1);
    EXPECT_THAT(found.err, HasSubstr("favourites: "));
    EXPECT_THAT(found.out, HasSubstr("Zollhaus"));
}

TEST(SearchTestWithAMuteService, AnInterruptEndsASearchAtOnceWhateverTheServiceOwes)
{
    const MuteService service;
    QProcess client;
    client.start(QStringLiteral(PROGRAMS "/places"), {QStringLiteral("search"), QStringLiteral("zo")});
    service.waitForRequest();
    ::kill(static_cast<pid_t>(client.processId()), SIGINT);
    EXPECT_TRUE(client.waitForFinished(10000));
    EXPECT_EQ(client.exitStatus(), QProcess::CrashExit) << "a shell shall see that it was a signal";
    EXPECT_EQ(client.exitCode(), SIGINT);
}

TEST(SearchTestWithAMuteService, LeavingTheTerminalDoesNotWaitForTheService)
{
    const MuteService service;
    Typing typing;
    service.waitForRequest();
    typing.type("\x1b");
    const int status = typing.wait();
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 1);
}

TEST_F(SearchTest, WhatIsTypedIsSearchedAndWhatIsChosenIsShown)
{
    Typing typing;
    ASSERT_TRUE(typing.searches());
    typing.type("quite wrong\x15zx\x7f\xc3"); // erased as a line and as a character, and half a letter
    ASSERT_TRUE(typing.searches());
    typing.type("\xbcr");
    ASSERT_TRUE(typing.searches());
    typing.type("\r");
    EXPECT_EQ(typing.wait(), 0);
    EXPECT_THAT(afterTheScreen(typing.output()), HasSubstr("Name          Z\xc3\xbcrich\r\n"));
    EXPECT_TRUE(typing.isRestored());
}

TEST_F(SearchTest, ArrowsChooseAmongTheResultsOfAllGroups)
{
    Typing typing("--group=favourites,remote");
    ASSERT_TRUE(typing.searches());
    typing.type("z");
    ASSERT_TRUE(typing.searches());
    typing.type("\x1b[B\x1bOB\x1bOB\x1b[A\x1b[99~\x1bx"); // in both spellings, and keys that mean nothing
    typing.type("\r");
    EXPECT_EQ(typing.wait(), 0);
    EXPECT_THAT(afterTheScreen(typing.output()), HasSubstr("Category      city"));
}

TEST_F(SearchTest, WideLettersTakeTwoColumnsAndANewSizeIsDrawnAtOnce)
{
    Typing typing;
    ASSERT_TRUE(typing.searches());
    typing.type("\xe6\x9d\xb1\xe4\xba\xac");
    EXPECT_TRUE(typing.shows("\x1b[1;13H")) << "the cursor behind \"Search: \" and two wide letters";
    EXPECT_TRUE(typing.shows("Elsewhere"));
    typing.resize(8, 40);
    EXPECT_TRUE(typing.shows("\x1b[8;1H")) << "the last row is now the eighth: " << typing.output();
}

TEST_F(SearchTest, EveryWayOutLeavesTheTerminalAsItWas)
{
    const struct
    {
        const char *keys;
        int signal; ///< Sent if not 0.
        int endsBySignal;
    } ways[] = {{"\x1b", 0, 0}, {"\x04", 0, 0}, {"\x03", 0, SIGINT}, {"z", SIGTERM, SIGTERM}, {"z", SIGHUP, SIGHUP}};
    for (const auto &way : ways) {
        Typing typing;
        ASSERT_TRUE(typing.shows("Zoo"));
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
}

TEST_F(SearchTest, WithoutATerminalTypingIsRefused)
{
    const Outcome refused = places("search --as-you-type");
    EXPECT_EQ(refused.status, 2);
    EXPECT_THAT(refused.err, HasSubstr("standard input is no terminal"));
}
