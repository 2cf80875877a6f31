// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "BrowserWindow.h"
#include "PlaceText.h"
#include "ResultList.h"
#include "support/Client.h"
#include "support/Gazetteer.h"
#include "support/Placesd.h"
#include "WorldMap.h"

#include <places/PlaceHeader.h>
#include <places/PlaceManager.h>
#include <places/PointOfInterestAuxiliaryData.h>

#include <gmock/gmock.h>

#include <QtCore/QThread>
#include <QtGui/QImage>
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

constexpr int PATIENCE = 30000; // milliseconds

/// The window, used through its keys and read as a user reads it.
class BrowserTest : public testing::Test
{
protected:
    BrowserTest()
        : service(sampleGazetteer())
        , window(std::make_unique<BrowserWindow>())
    {
        window->show();
        window->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(window.get()));
        settle();
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

    Placesd service;
    std::unique_ptr<BrowserWindow> window;
};

/// The only stored place of a name.
std::unique_ptr<PlaceHeader> stored(const char *name)
{
    Error::Type error = Error::Success;
    QList<PlaceHeader *> found = PlaceManager().findPlaces(QString::fromUtf8(name), &error);
    EXPECT_EQ(error, Error::Success);
    EXPECT_LE(found.size(), 1);
    return std::unique_ptr<PlaceHeader>(found.isEmpty() ? nullptr : found.takeFirst());
}

} // namespace

TEST_F(BrowserTest, TypingFillsTheGroupsAndEveryPlaceStandsInOneOfThem)
{
    EXPECT_EQ(rows(), "");
    EXPECT_EQ(places("add Zurichsee --at 47.25,8.7").out, "1\n");
    EXPECT_EQ(places("add Zurichberg --at 47.38,8.56").out, "2\n");
    EXPECT_EQ(places("fav 2").status, 0);
    type("zurich");
    EXPECT_THAT(rows(), testing::StartsWith("# Favourites\nZurichberg\n# Saved places\nZurichsee\n# More places\nZ"));
    EXPECT_THAT(rows(), HasSubstr("\n# By address\n"));
    EXPECT_EQ(rows().find("Zürich Airport"), rows().rfind("Zürich Airport"));
    type("xyz");
    EXPECT_EQ(rows(), "");
    EXPECT_EQ(status(), "0 places");
    press(Qt::Key_Escape);
    EXPECT_EQ(rows(), "# Favourites\nZurichberg\n# Saved places\nZurichsee");
}

TEST_F(BrowserTest, ArrowsMoveFromPlaceToPlaceAndEachIsShownWithWhatItsProviderKnows)
{
    places("add Zurichsee --at 47.25,8.7 --phone 044");
    type("zurich");
    press(Qt::Key_Down);
    EXPECT_EQ(current(), "Zurichsee") << "not the heading";
    EXPECT_THAT(text(), HasSubstr("44"));
    press(Qt::Key_Down);
    EXPECT_EQ(current(), "Zürich") << "the next group";
    EXPECT_THAT(text(), HasSubstr("47.3667° N, 8.5500° E"));
    EXPECT_THAT(text(), HasSubstr("341730")) << "the population, a detail of the provider's";
    EXPECT_THAT(text(), Not(HasSubstr("044")));
    press(Qt::Key_Up);
    press(Qt::Key_Up);
    EXPECT_EQ(current(), "Zurichsee");
    EXPECT_EQ(widget<QLineEdit>("term")->text(), QLatin1String("zurich"));
}

TEST_F(BrowserTest, AFavouriteIsStoredAndStaysChosenInItsNewGroup)
{
    type("winterthur");
    press(Qt::Key_Return);
    EXPECT_FALSE(starIsFull());
    press(Qt::Key_D, Qt::ControlModifier);
    EXPECT_TRUE(starIsFull());
    EXPECT_EQ(widget<QLineEdit>("term")->text(), QLatin1String("winterthur")) << "no letter was deleted";
    EXPECT_THAT(rows(), testing::StartsWith("# Favourites\nWinterthur"));
    EXPECT_EQ(current(), "Winterthur");
    EXPECT_TRUE(stored("winterthur")->isFavorite());
    QTest::mouseClick(widget<QToolButton>("star"), Qt::LeftButton);
    settle();
    EXPECT_FALSE(starIsFull());
    EXPECT_FALSE(stored("winterthur")->isFavorite());
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
    const auto place = stored("winterthur");
    ASSERT_TRUE(place);
    EXPECT_TRUE(place->isFavorite());
}

TEST_F(BrowserTest, ErrorsStandInTheStatusLineUntilTheServiceIsBack)
{
    type("winterthur");
    press(Qt::Key_Return);
    const std::string before = text();
    service.kill();
    press(Qt::Key_D, Qt::ControlModifier);
    EXPECT_EQ(status(), "No places service is running.");
    EXPECT_FALSE(starIsFull());
    EXPECT_EQ(text(), before);
    type(" ");
    EXPECT_EQ(rows(), "");
    EXPECT_EQ(status(), "No places service is running.");
    service.start();
    press(Qt::Key_Backspace);
    EXPECT_THAT(rows(), HasSubstr("Winterthur"));
    EXPECT_THAT(status(), HasSubstr("place"));
    EXPECT_EQ(current(), "Winterthur") << "what is shown is chosen again";
}

TEST(TheTextOfAPlace, SaysWhenItIsOpenAndHowGoodItIs)
{
    PointOfInterestAuxiliaryData poi;
    TimeRange morning;
    morning.setStartHour(9);
    morning.setEndHour(12);
    morning.setEndMinute(5);
    poi.setOpeningHours({{DayOfWeek::Monday, {morning, morning}}, {DayOfWeek::Sunday, {morning}}});
    poi.setRating(4.5);
    poi.setRatingCount(12);
    const QString text = placeText(Place(), {poi});
    for (const char *part :
         {"Mon 09:00–12:05, 09:00–12:05<br>Tue closed", "Sat closed<br>Sun 09:00–12:05", "★ 4.5 (12 ratings)"})
        EXPECT_TRUE(text.contains(QString::fromUtf8(part))) << part << " in " << qPrintable(text);
}

TEST(TheTextOfAPlace, MakesNothingButHarmlessLinksOfWhatOthersWrote)
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
        {"file:///etc/passwd", nullptr},
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

TEST(TheMap, HasItsLandWhereItBelongsInEverySizeAndPalette)
{
    const struct
    {
        const char *name;
        Coordinates position;
        bool isLand;
    } rows[] = {
        {"Sahara", {22, 10}, true},
        {"Brazil", {-8, -52}, true},
        {"Chukotka, beyond the 180th meridian", {66.8, -177.3}, true},
        {"Antarctica, down to the pole", {-86, 40}, true},
        {"Atlantic", {32, -42}, false},
        {"Norwegian Sea, beside Chukotka's latitude", {67, 4}, false},
        {"Caspian Sea", {42, 50.5}, false},
    };
    QPalette dark(QColor(40, 40, 44));
    for (const QPalette &palette : {QPalette(Qt::white), dark}) {
        for (const QSize size : {QSize(720, 360), QSize(700, 900)}) {
            WorldMap map;
            map.setPalette(palette);
            map.resize(size);
            const QImage image = map.grab().toImage();
            const auto colourAt = [&](const Coordinates &position) {
                return image.pixel(map.pointOf(position).toPoint());
            };
            for (const auto &row : rows)
                EXPECT_EQ(colourAt(row.position) == colourAt({50, 60}), row.isLand) << row.name << " " << size.height();
            EXPECT_NEAR(map.pointOf({90, -180}).x(), 0, 1e-9);
            EXPECT_NEAR(map.pointOf({-90, 180}).y() - map.pointOf({90, 0}).y(), size.width() / 2.0, 1e-9);
        }
    }
}

TEST(TheBrowser, SavesAPictureOfWhatItFound)
{
    const Placesd service(sampleGazetteer());
    const QString file = service.path("window.png");
    const Outcome outcome = run(
        "places_browser", {QStringLiteral("--search"), QStringLiteral("zurich"), QStringLiteral("--screenshot"), file});
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_GT(QImage(file).width(), 800);
    EXPECT_EQ(run("places_browser", {QStringLiteral("--screenshot"), QStringLiteral("/no/such.png")}).status, 1);
}

int main(int argc, char **argv)
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
