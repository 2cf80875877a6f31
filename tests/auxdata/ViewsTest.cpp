// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "places/CalendarAuxiliaryData.h"
#include "places/ImageAuxiliaryData.h"
#include "places/ReservationAuxiliaryData.h"
#include "places/ReviewAuxiliaryData.h"

#include <gmock/gmock.h>

#include <cmath>

using namespace vela::platform::places;

namespace
{

using Properties = QMap<QString, QString>;

constexpr qint64 LAST_SECOND = 4294967295;
const QUrl PAGE(QStringLiteral("https://guide.example/1"));

AuxiliaryData recordOf(const char *type, const Properties &properties = {})
{
    AuxiliaryData record{QString(QLatin1String(type))};
    for (auto property = properties.begin(); property != properties.end(); ++property)
        record.addProperty(property.key(), property.value());
    return record;
}

QDateTime at(qint64 seconds)
{
    return QDateTime::fromSecsSinceEpoch(seconds, Qt::UTC);
}

} // namespace

TEST(CalendarAuxiliaryData, KeepsItsTextsUnderItsOwnKeys)
{
    CalendarAuxiliaryData entry;
    entry.setSubject(QStringLiteral("Café"));
    entry.setInvitees({QStringLiteral("alice"), QStringLiteral("bob"), QString()});
    entry.setStartTime(at(1000).toOffsetFromUtc(3600));
    entry.setEndTime(QDateTime());
    const Properties expected = {{QStringLiteral("subject"), QStringLiteral("Café")},
                                 {QStringLiteral("invitees"), QStringLiteral("alice;bob;")},
                                 {QStringLiteral("start_time"), QStringLiteral("1000")},
                                 {QStringLiteral("end_time"), QStringLiteral("4294967295")}};
    EXPECT_EQ(entry.auxiliaryData().properties(), expected);
    EXPECT_EQ(entry.auxiliaryData().type(), AuxiliaryData::TypeCalendar);
    EXPECT_EQ(entry.invitees(), (QStringList{QStringLiteral("alice"), QStringLiteral("bob"), QString()}));
    EXPECT_EQ(entry.startTime(), at(1000));
    entry.setInvitees({});
    EXPECT_TRUE(entry.invitees().isEmpty());
    for (const qint64 inexpressible : {qint64(-1), LAST_SECOND + 1, qint64(1) << 40}) {
        entry.setStartTime(at(inexpressible));
        EXPECT_EQ(entry.startTime(), at(LAST_SECOND)) << inexpressible;
    }
}

TEST(CalendarAuxiliaryData, ReadsTheDigitsThatATimeBeginsWith)
{
    const struct
    {
        const char *text;
        QDateTime expected;
    } cases[] = {
        {"", QDateTime()},
        {" -", QDateTime()},
        {"0", at(0)},
        {" \t\n1000", at(1000)},
        {"1000.7 or so", at(1000)},
        {"4294967296", at(LAST_SECOND)},
        {"99999999999999999999999", at(LAST_SECOND)},
    };
    for (const auto &row : cases) {
        const QString text = QLatin1String(row.text);
        const CalendarAuxiliaryData entry(
            recordOf("calendar", {{QStringLiteral("start_time"), text}, {QStringLiteral("end_time"), text}}));
        EXPECT_EQ(entry.startTime(), row.expected) << row.text;
        EXPECT_EQ(entry.endTime(), row.expected) << row.text;
    }
    EXPECT_TRUE(CalendarAuxiliaryData().startTime().isNull());
    EXPECT_TRUE(CalendarAuxiliaryData().endTime().isNull());
}

TEST(ImageAuxiliaryData, IsValidWithAUrlInARecordOfItsOwnType)
{
    const Properties withUrl = {{QStringLiteral("url"), PAGE.toString()}};
    EXPECT_FALSE(ImageAuxiliaryData().isValid());
    EXPECT_FALSE(ReservationAuxiliaryData().isValid());
    EXPECT_TRUE(ImageAuxiliaryData(recordOf("lbs-image", withUrl)).isValid());
    EXPECT_TRUE(ReservationAuxiliaryData(recordOf("lbs-reservation", withUrl)).isValid());
    EXPECT_FALSE(ReservationAuxiliaryData(recordOf("lbs-image", withUrl)).isValid());
    EXPECT_FALSE(
        ImageAuxiliaryData(recordOf("lbs-image", {{QStringLiteral("url"), QStringLiteral("http://[")}})).isValid());
    for (const char *type : {"", "lbs-imag", "lbs-images", "LBS-IMAGE", "lbs-review"})
        EXPECT_FALSE(ImageAuxiliaryData(recordOf(type, withUrl)).isValid()) << type;
}

TEST(ReviewAuxiliaryData, TellsAMissingRatingFromARatingOfZero)
{
    ReviewAuxiliaryData review;
    EXPECT_TRUE(std::isnan(review.rating()));
    EXPECT_FALSE(review.isValid());
    review.setRating(0.0);
    EXPECT_TRUE(review.isValid());
    review.setRating(1.0 / 3);
    EXPECT_EQ(review.rating(), 1.0 / 3);
    review.setRating(std::nan(""));
    EXPECT_FALSE(review.isValid());
    const Properties unreadable = {{QStringLiteral("rating"), QStringLiteral("good")}};
    EXPECT_EQ(ReviewAuxiliaryData(recordOf("lbs-review", unreadable)).rating(), 0.0);
    EXPECT_FALSE(ReviewAuxiliaryData(recordOf("poi", unreadable)).isValid());
}

TEST(ReviewAuxiliaryData, KeepsItsTextsUnderItsOwnKeys)
{
    ReviewAuxiliaryData review;
    EXPECT_EQ(review.creationTime(), at(0));
    review.setRating(4.5);
    review.setAbstract(QStringLiteral("a"));
    review.setCreationTime(at(3000000000));
    const Properties expected = {{QStringLiteral("rating"), QStringLiteral("4.5")},
                                 {QStringLiteral("abstract"), QStringLiteral("a")},
                                 {QStringLiteral("creationTime"), QStringLiteral("3000000000")}};
    EXPECT_EQ(review.auxiliaryData().properties(), expected);
    EXPECT_EQ(review.creationTime(), at(3000000000));
    for (const char *text : {"", "12 May", "-1", "4294967296"}) {
        const Properties time = {{QStringLiteral("creationTime"), QLatin1String(text)}};
        EXPECT_EQ(ReviewAuxiliaryData(recordOf("lbs-review", time)).creationTime(), at(0)) << text;
    }
}
