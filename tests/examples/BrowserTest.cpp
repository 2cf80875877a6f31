// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "BrowserWindow.h"
#include "PlaceText.h"
#include "ResultList.h"
#include "support/Client.h"
#include "support/Files.h"
#include "support/Gazetteer.h"
#include "support/Placesd.h"
#include "support/VCards.h"

#include <places/Place.h>
#include <places/PointOfInterestAuxiliaryData.h>

#include <gmock/gmock.h>

#include <QtCore/QThread>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QTextBrowser>
#include <QtWidgets/QToolButton>

#include <thread>

using namespace vela::platform::places;
using testing::HasSubstr;
using testing::Not;

namespace
{

constexpr int PATIENCE = 60000; // milliseconds

/// Somebody with two addresses that no gazetteer knows.
const QByteArray CARD = files::card("FN:Anna Muster\nTEL;TYPE=CELL:079\n"
                                    "ADR;TYPE=HOME:;;Seeweg 1;Nirgendwo;;;\nADR;TYPE=WORK:;;Talweg 2;Nirgendwo;;;\n");

/// The window, used through its keys and read as a user reads it.
class BrowserTest : public testing::Test
{
protected:
    BrowserTest()
        : service(sampleGazetteer() + contacts())
    {
        awaitGazetteer();
        window = std::make_unique<BrowserWindow>();
        window->show();
        window->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(window.get()));
        settle();
    }

    QStringList contacts()
    {
        files::write(cards.filePath(QStringLiteral("anna.vcf")), CARD);
        return contactsIn(cards.path());
    }

    template <typename Widget>
    Widget *widget(const char *name)
    {
        return window->findChild<Widget *>(QLatin1String(name));
    }

    void settle()
    {
        EXPECT_TRUE(QTest::qWaitFor([this] { return window->isComplete(); }, PATIENCE));
    }
    void press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(widget<QLineEdit>("term"), static_cast<Qt::Key>(key), modifiers);
        settle();
    }
    void type(const char *text)
    {
        QTest::keyClicks(widget<QLineEdit>("term"), QString::fromUtf8(text));
        settle();
    }

    std::string rows()
    {
        QStringList rows;
        const auto *list = widget<ResultList>("list");
        for (int i = 0; i < list->count(); ++i)
            rows.append((list->item(i)->flags() ? QString() : QStringLiteral("# ")) + list->item(i)->text());
        return rows.join(QLatin1Char('\n')).toStdString();
    }
    std::string current()
    {
        const QListWidgetItem *item = widget<ResultList>("list")->currentItem();
        return item ? item->text().toStdString() : std::string();
    }
    std::string text() { return widget<QTextBrowser>("text")->toPlainText().toStdString(); }
    std::string status() { return widget<QLabel>("status")->text().toStdString(); }
    bool starIsFull() { return widget<QToolButton>("star")->text() == QStringLiteral("★"); }

    QTemporaryDir cards;
    Placesd service;
    std::unique_ptr<BrowserWindow> window;
};

} // namespace

TEST_F(BrowserTest, WhatIsTypedIsFoundAndWhatIsChosenIsShownAndMadeAFavourite)
{
    EXPECT_EQ(places("add Zurichsee --at 47.25,8.7 --phone 044").out, "1\n");
    type("zurich");
    EXPECT_THAT(rows(), testing::StartsWith("# Saved places\nZurichsee\n# More places\nZ"));
    EXPECT_EQ(rows().find("Zürich Airport"), rows().rfind("Zürich Airport")) << "a place stands in one group";
    press(Qt::Key_Down);
    EXPECT_EQ(current(), "Zurichsee") << "not the heading";
    press(Qt::Key_Down);
    EXPECT_EQ(current(), "Zürich") << "the next group";
    EXPECT_THAT(text(), HasSubstr("341730")) << "the population, a detail of the provider's";
    EXPECT_THAT(text(), Not(HasSubstr("044")));

    press(Qt::Key_D, Qt::ControlModifier);
    EXPECT_TRUE(starIsFull());
    EXPECT_EQ(widget<QLineEdit>("term")->text(), QLatin1String("zurich")) << "no letter was deleted";
    EXPECT_THAT(rows(), testing::StartsWith("# Favourites\nZürich\n# Saved places\nZurichsee"));
    EXPECT_EQ(current(), "Zürich");
    QTest::mouseClick(widget<QToolButton>("star"), Qt::LeftButton);
    settle();
    EXPECT_FALSE(starIsFull());
    type("xyz");
    EXPECT_EQ(rows(), "");
}

TEST_F(BrowserTest, AContactStandsThereWithEachAddressAndIsShownWithItsRecord)
{
    NEEDS_VCARDS();
    EXPECT_EQ(rows(), "# Contacts\nAnna Muster\nAnna Muster");
    press(Qt::Key_Down);
    press(Qt::Key_Down);
    EXPECT_THAT(text(), HasSubstr("Talweg 2"));
    EXPECT_THAT(text(), HasSubstr("079"));
}

TEST_F(BrowserTest, WhatAnotherProgramStoresIsShownWithoutBeingAskedFor)
{
    NEEDS_VCARDS();
    EXPECT_EQ(rows(), "# Contacts\nAnna Muster\nAnna Muster");
    places("add Zurichsee --at 47.25,8.7");
    EXPECT_TRUE(QTest::qWaitFor(
        [this] { return rows() == "# Saved places\nZurichsee\n# Contacts\nAnna Muster\nAnna Muster"; }, PATIENCE))
        << rows();
    press(Qt::Key_Down);
    EXPECT_EQ(current(), "Zurichsee");
    places("remove 1");
    EXPECT_TRUE(QTest::qWaitFor([this] { return rows() == "# Contacts\nAnna Muster\nAnna Muster"; }, PATIENCE))
        << rows();
}

TEST_F(BrowserTest, ClosingWhileTheServiceIsSlowLosesNoFavourite)
{
    type("winterthur");
    service.pause();
    QTest::keyClick(widget<QLineEdit>("term"), Qt::Key_Return);
    QTest::keyClick(widget<QLineEdit>("term"), Qt::Key_D, Qt::ControlModifier);
    std::thread later([this] {
        QThread::msleep(300);
        service.resume();
    });
    window.reset();
    later.join();
    QTest::qWait(50); // an animation of a button that is gone ends with the next turn of the event loop
    EXPECT_THAT(places("search winter --group favourites").out, HasSubstr("Winterthur"));
}

TEST_F(BrowserTest, WithoutAServiceTheWindowSaysSoAndRecoversByItself)
{
    type("winterthur");
    press(Qt::Key_Return);
    service.kill();
    press(Qt::Key_D, Qt::ControlModifier);
    EXPECT_EQ(status(), "No places service is running.");
    EXPECT_FALSE(starIsFull());
    type(" ");
    EXPECT_EQ(rows(), "");
    EXPECT_EQ(widget<ResultList>("list")->emptyText(), QLatin1String("No places service is running. Trying again ..."));
    service.start();
    EXPECT_TRUE(QTest::qWaitFor([this] { return status() != "No places service is running."; }, PATIENCE));
    EXPECT_THAT(rows(), HasSubstr("Winterthur"));
    EXPECT_EQ(current(), "Winterthur") << "what is shown is chosen again";
}

TEST_F(BrowserTest, ReturnActsOnTheCurrentRowAndWaitsForTheAnswerToWhatWasTyped)
{
    type("winterthur");
    press(Qt::Key_Return);
    EXPECT_EQ(current(), "Winterthur");
    auto *term = widget<QLineEdit>("term");
    term->selectAll();
    service.pause();
    QTest::keyClicks(term, QStringLiteral("heathrow"));
    QTest::keyClick(term, Qt::Key_Return);
    EXPECT_EQ(current(), "Winterthur") << "still to be seen";
    service.resume();
    settle();
    EXPECT_EQ(current(), "London Heathrow Airport");
    term->selectAll();
    type("london");
    press(Qt::Key_Down);
    press(Qt::Key_Down);
    const std::string chosen = current();
    press(Qt::Key_Return);
    EXPECT_EQ(current(), chosen) << "not the first";
}

TEST_F(BrowserTest, ACategoryLeadsToItsPlacesNearTheCentreAndBack)
{
    window->setCentre(Coordinates(51.47, -0.45));
    type("large");
    EXPECT_THAT(rows(), testing::StartsWith("# Categories\nlarge airport\n# More places"));
    press(Qt::Key_Down);
    press(Qt::Key_D, Qt::ControlModifier);
    EXPECT_THAT(places("search --group favourites").err, HasSubstr("nothing found")) << "it is no place";
    press(Qt::Key_Return);
    EXPECT_THAT(rows(), testing::StartsWith("# large airport, the first 20\nLondon Heathrow Airport\n"));
    press(Qt::Key_Down);
    EXPECT_THAT(text(), HasSubstr("LHR"));
    press(Qt::Key_Escape);
    EXPECT_THAT(rows(), testing::StartsWith("# Categories\nlarge airport\n# More places"));
    EXPECT_EQ(widget<QLineEdit>("term")->text(), QLatin1String("large"));
}

TEST(PlaceText, MakesNothingButHarmlessLinksOfWhatOthersWrote)
{
    Place place;
    place.setDescription(QStringLiteral("<img src='http://x.example/spy'>"));
    AuxiliaryData notes(QStringLiteral("<b>"));
    notes.addProperty(QStringLiteral("<i>"), QStringLiteral("http://x.example/\"onclick='y'"));
    const struct
    {
        const char *url;
        const char *link;
    } rows[] = {
        {"https://x.example/a b?c=\"d&e", "href=\"https://x.example/a%20b?c=%22d&amp;e\""},
        {"javascript:alert(1)", nullptr},
    };
    for (const auto &row : rows) {
        PointOfInterestAuxiliaryData poi;
        poi.setUrl(QUrl(QLatin1String(row.url)));
        const std::string text = placeText(place, {poi, notes}).toStdString();
        EXPECT_THAT(text, HasSubstr(row.link ? row.link : poi.url().toDisplayString().toStdString()));
        EXPECT_EQ(text.find("<a href") != std::string::npos, row.link != nullptr) << text;
        for (const char *tag : {"<img", "<b>", "<i>"})
            EXPECT_EQ(text.find(tag), std::string::npos) << text;
    }
}

/// The leak sanitizer asks for this: Qt leaves its off-screen screen to the end of the process.
extern "C" __attribute__((visibility("default"))) const char *
__lsan_default_suppressions() // NOLINT(bugprone-reserved-identifier)
{
    return "leak:libqoffscreen\nleak:QScreen\nleak:QPlatformScreen\n";
}

int main(int argc, char **argv)
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
