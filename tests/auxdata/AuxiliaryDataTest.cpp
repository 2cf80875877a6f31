// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "auxdata/AuxiliaryDataPrivate.h"
#include "places/CalendarAuxiliaryData.h"
#include "places/ContactAuxiliaryData.h"
#include "places/ImageAuxiliaryData.h"
#include "places/PointOfInterestAuxiliaryData.h"
#include "places/ReservationAuxiliaryData.h"
#include "places/ReviewAuxiliaryData.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>

using namespace vela::platform::places;

namespace
{

constexpr qint64 LAST_SECOND = 4294967295;

AuxiliaryData recordWith(const char *key, const char *value, const QString &type = QStringLiteral("t"))
{
    AuxiliaryData record(type);
    record.addProperty(QLatin1String(key), QString::fromUtf8(value));
    return record;
}

PointOfInterestAuxiliaryData poiWith(const char *key, const char *value)
{
    return PointOfInterestAuxiliaryData(recordWith(key, value, AuxiliaryData::TypePointOfInterest));
}

/// A text of a view and its key, which is part of the stored format, as is whether it is found in its legacy spelling.
template <typename View>
struct ViewText
{
    const char *key;
    QString (View::*get)() const;
    bool isLegacy = false;
    void (View::*set)(const QString &) = nullptr;
};

template <typename View>
void expectTexts(const std::vector<ViewText<View>> &texts)
{
    const QString value = QStringLiteral("é");
    for (const auto &text : texts) {
        const std::string framed = ";" + std::string(text.key) + ";";
        EXPECT_EQ((View(recordWith(text.key, "é")).*text.get)(), value) << text.key;
        EXPECT_EQ((View(recordWith(framed.c_str(), "é")).*text.get)().isEmpty(), !text.isLegacy) << text.key;
        View view;
        if (text.set) {
            (view.*text.set)(value);
            EXPECT_EQ(view.auxiliaryData().properties(), (QMap<QString, QString>{{QLatin1String(text.key), value}}));
        }
    }
}

TimeRange range(short startHour, short startMinute, short endHour, short endMinute)
{
    TimeRange range;
    range.setStartHour(startHour);
    range.setStartMinute(startMinute);
    range.setEndHour(endHour);
    range.setEndMinute(endMinute);
    return range;
}

Category category(const char *code, const QList<Category> &children = {})
{
    Category category;
    category.setCode(QString::fromLatin1(code));
    category.setChildren(children);
    return category;
}

QDateTime at(qint64 seconds)
{
    return QDateTime::fromSecsSinceEpoch(seconds, Qt::UTC);
}

/// The properties of a view, as "key=value" in their order.
template <typename View>
std::string propertiesOf(const View &view)
{
    QStringList all;
    const QMap<QString, QString> properties = view.auxiliaryData().properties();
    for (const QString &key : properties.keys())
        all += key + QLatin1Char('=') + properties[key];
    return all.join(QLatin1Char(' ')).toStdString();
}

} // namespace

TEST(AuxiliaryData, KeepsAListAsOneText)
{
    AuxiliaryData data;
    const QString key = QStringLiteral("k");
    data.addQVariantListProperty(key, {QStringLiteral("a,b"), 3.5, QStringLiteral("x|-|y")});
    EXPECT_EQ(data.property(key), QStringLiteral("a|-|b,3.5,x|-|y"));
    EXPECT_EQ(data.qvariantListProperty(key),
              (QList<QVariant>{QStringLiteral("a,b"), QStringLiteral("3.5"), QStringLiteral("x,y")}));
    EXPECT_TRUE(data.qvariantListProperty(QStringLiteral("absent")).isEmpty());
    data.addQVariantListProperty(key, {});
    EXPECT_EQ(data.qvariantListProperty(key), QList<QVariant>{QString(QLatin1String(""))});
}

TEST(AuxiliaryData, FindsTheLegacySpellingOfAKeyOnlyWhereItIsAskedFor)
{
    const AuxiliaryData data = recordWith(";fax;", "12");
    const AuxiliaryDataPrivate &record = *AuxiliaryDataPrivate::fromPublic(data);
    EXPECT_EQ(record.legacyProperty(QStringLiteral("fax")), QStringLiteral("12"));
    EXPECT_EQ(data.property(QStringLiteral("fax")), QString());
    EXPECT_FALSE(record.legacyQvariantProperty(QStringLiteral("none")).isValid());
    AuxiliaryData both = data;
    both.addProperty(QStringLiteral("fax"), QString());
    EXPECT_EQ(AuxiliaryDataPrivate::fromPublic(both)->legacyProperty(QStringLiteral("fax")), QString());
}

TEST(ContactAuxiliaryData, ReadsEachKeyInTheSpellingsItHas)
{
    using Contact = ContactAuxiliaryData;
    expectTexts<Contact>({
        {"fullName", &Contact::fullName},
        {"firstName", &Contact::firstName},
        {"middleName", &Contact::middleName},
        {"lastName", &Contact::lastName},
        {"title", &Contact::title},
        {"company", &Contact::company},
        {"mobilePhone", &Contact::mobilePhone},
        {"homePhone", &Contact::homePhone},
        {"workPhone", &Contact::workPhone},
        {"email", &Contact::emailAddress},
        {"fax", &Contact::fax, true},
        {"notes", &Contact::notes, true},
        {"photoOriginal", &Contact::photoPathOriginal, true},
        {"photolarge", &Contact::photoPathLarge, true},
        {"photosmall", &Contact::photoPathSmall, true},
        {"photomime", &Contact::photoMimeType, true},
    });
    EXPECT_EQ(Contact(recordWith(";accountId;", "12")).accountId(), 12);
    EXPECT_EQ(Contact(recordWith("accountId", "12abc")).accountId(), 0);
    EXPECT_EQ(Contact(recordWith("contactId", "-3")).contactId(), -3);
    EXPECT_EQ(Contact(recordWith(";url;", "https://a.example/")).url(), QUrl(QStringLiteral("https://a.example/")));
    EXPECT_TRUE(Contact(recordWith(";workPerimeter;", "1")).isWorkContact());
    for (const char *text : {"0", "01", "true", ""})
        EXPECT_FALSE(Contact(recordWith("workPerimeter", text)).isWorkContact()) << text;
}

TEST(PointOfInterestAuxiliaryData, ReadsEachKeyInTheSpellingsItHas)
{
    using Poi = PointOfInterestAuxiliaryData;
    expectTexts<Poi>({
        {"name", &Poi::name, false, &Poi::setName},
        {"category", &Poi::category, false, &Poi::setCategory},
        {"phoneNumber", &Poi::phoneNumber, false, &Poi::setPhoneNumber},
        {"emailAddress", &Poi::emailAddress, false, &Poi::setEmailAddress},
        {"fax", &Poi::fax, true, &Poi::setFax},
        {"openingHoursStr", &Poi::openingHoursString, true, &Poi::setOpeningHoursString},
        {"parkingText", &Poi::parkingText, true},
        {"reservationText", &Poi::reservationText, true},
        {"priceRangeText", &Poi::priceRangeText, true},
        {"paymentMethodText", &Poi::paymentMethodText, true},
    });
    EXPECT_TRUE(Poi().isValid());
    EXPECT_FALSE(Poi(recordWith("name", "n", AuxiliaryData::TypeContact)).isValid());
}

TEST(ReviewAuxiliaryData, KeepsEachTextUnderItsKey)
{
    using Review = ReviewAuxiliaryData;
    expectTexts<Review>({
        {"title", &Review::title, false, &Review::setTitle},
        {"abstract", &Review::abstract, false, &Review::setAbstract},
        {"fullText", &Review::fullText, false, &Review::setFullText},
        {"userName", &Review::userName, false, &Review::setUserName},
    });
}

TEST(PointOfInterestAuxiliaryData, KeepsNumbersAsTexts)
{
    PointOfInterestAuxiliaryData poi;
    EXPECT_EQ(poi.utcOffsetSeconds(), std::numeric_limits<int>::max());
    EXPECT_EQ(poi.rating(), 0.0);
    poi.setRating(1.0 / 3);
    poi.setRatingCount(12);
    poi.setUtcOffsetSeconds(-3600);
    EXPECT_EQ(poi.auxiliaryData().property(QStringLiteral("rating")), QStringLiteral("0.333333"));
    EXPECT_EQ(poi.auxiliaryData().property(QStringLiteral("utcOffsetSeconds")), QStringLiteral("-3600"));
    EXPECT_EQ(poi.ratingCount(), 12);
    EXPECT_EQ(poi.utcOffsetSeconds(), -3600);
    EXPECT_EQ(poiWith(";utcOffsetSeconds;", "7").utcOffsetSeconds(), 7);
    EXPECT_EQ(poiWith("utcOffsetSeconds", "soon").utcOffsetSeconds(), 0);
}

TEST(PointOfInterestAuxiliaryData, KeepsItsHoursByDay)
{
    PointOfInterestAuxiliaryData poi;
    const QList<TimeRange> monday = {range(9, 0, 12, 30), range(14, 0, 18, 0)};
    poi.setOpeningHours({{DayOfWeek::Monday, monday}, {DayOfWeek::Wednesday, {}}});
    EXPECT_EQ(poi.auxiliaryData().property(QStringLiteral("openingHours")), QStringLiteral("1;9,0,12,30;14,0,18,0|3;"));
    EXPECT_EQ(poi.openingHours(), (QMap<DayOfWeek::Type, QList<TimeRange>>{{DayOfWeek::Monday, monday}}));
}

TEST(PointOfInterestAuxiliaryData, TakesFromGarbledHoursWhatCanBeRead)
{
    using Hours = QMap<DayOfWeek::Type, QList<TimeRange>>;
    const struct
    {
        const char *text;
        Hours expected;
    } cases[] = {
        {"", {}},
        {"2;9,0,17|3;8,0,12,0", {{DayOfWeek::Wednesday, {range(8, 0, 12, 0)}}}},
        {"1;x,5y,-2,99999999999", {{DayOfWeek::Monday, {range(0, 5, -2, 0)}}}},
        {"1;1,1,1,1|1;2,2,2,2", {{DayOfWeek::Monday, {range(2, 2, 2, 2)}}}},
        {"9;1,1,1,1", {{static_cast<DayOfWeek::Type>(9), {range(1, 1, 1, 1)}}}},
    };
    for (const auto &row : cases)
        EXPECT_EQ(poiWith("openingHours", row.text).openingHours(), row.expected) << row.text;
    EXPECT_FALSE(poiWith(";openingHours;", "1;1,1,1,1").openingHours().isEmpty());
}

TEST(PointOfInterestAuxiliaryData, KeepsCategoriesAndOneLevelOfChildren)
{
    PointOfInterestAuxiliaryData poi;
    poi.setCategories({category("food", {category("bar", {category("beer")}), category("caf\"e")}), category("shop")});
    EXPECT_EQ(poi.auxiliaryData().property(QStringLiteral("categories")),
              QStringLiteral(R"([{"code":"food","children":["bar","caf\"e"]},{"code":"shop"}])"));
    const QList<Category> read = poi.categories();
    ASSERT_EQ(read.size(), 2);
    ASSERT_EQ(read[0].children().size(), 2);
    EXPECT_EQ(read[0].children()[1].code(), QStringLiteral("caf\"e"));
    EXPECT_TRUE(read[0].children()[0].children().isEmpty());
    EXPECT_EQ(read[1].code(), QStringLiteral("shop"));
    poi.setCategories({});
    EXPECT_TRUE(poi.categories().isEmpty());
    for (const char *text : {"", "nonsense", "7", "[", "\"code\"", R"({"a":{"code":"x"}})"})
        EXPECT_TRUE(poiWith("categories", text).categories().isEmpty()) << text;
    const QList<Category> odd =
        poiWith("categories", R"([{"children":[1,"a"]},5,{"children":{"b":"c"}}])").categories();
    ASSERT_EQ(odd.size(), 3);
    EXPECT_EQ(odd[0].children().size(), 1);
    EXPECT_TRUE(odd[2].children().isEmpty());
}

TEST(CalendarAuxiliaryData, KeepsItsTextsUnderItsOwnKeys)
{
    CalendarAuxiliaryData entry;
    entry.setSubject(QStringLiteral("Café"));
    entry.setInvitees({QStringLiteral("alice"), QStringLiteral("bob"), QString()});
    entry.setStartTime(at(1000).toOffsetFromUtc(3600));
    entry.setEndTime(QDateTime());
    EXPECT_EQ(propertiesOf(entry), "end_time=4294967295 invitees=alice;bob; start_time=1000 subject=Café");
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
        EXPECT_EQ(CalendarAuxiliaryData(recordWith("start_time", row.text)).startTime(), row.expected) << row.text;
        EXPECT_EQ(CalendarAuxiliaryData(recordWith("end_time", row.text)).endTime(), row.expected) << row.text;
    }
    EXPECT_TRUE(CalendarAuxiliaryData().startTime().isNull());
    EXPECT_TRUE(CalendarAuxiliaryData().endTime().isNull());
}

TEST(ImageAuxiliaryData, IsValidWithAUrlInARecordOfItsOwnType)
{
    const struct
    {
        const char *type;
        const char *url;
        bool isImage, isReservation;
    } cases[] = {
        {"lbs-image", "https://guide.example/1", true, false},
        {"lbs-image", "http://[", false, false},
        {"lbs-image", "", false, false},
        {"lbs-reservation", "https://guide.example/1", false, true},
        {"lbs-reservation", "", false, false},
        {"", "https://guide.example/1", false, false},
        {"lbs-imag", "https://guide.example/1", false, false},
        {"lbs-images", "https://guide.example/1", false, false},
        {"LBS-IMAGE", "https://guide.example/1", false, false},
    };
    for (const auto &row : cases) {
        const AuxiliaryData record = recordWith("url", row.url, QLatin1String(row.type));
        EXPECT_EQ(ImageAuxiliaryData(record).isValid(), row.isImage) << row.type << row.url;
        EXPECT_EQ(ReservationAuxiliaryData(record).isValid(), row.isReservation) << row.type << row.url;
    }
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
    EXPECT_EQ(ReviewAuxiliaryData(recordWith("rating", "good", QLatin1String(AuxiliaryData::TypeReview))).rating(),
              0.0);
    EXPECT_FALSE(ReviewAuxiliaryData(recordWith("rating", "good", AuxiliaryData::TypePointOfInterest)).isValid());
}

TEST(ReviewAuxiliaryData, KeepsItsTimeAsSeconds)
{
    ReviewAuxiliaryData review;
    EXPECT_EQ(review.creationTime(), at(0));
    review.setRating(4.5);
    review.setCreationTime(at(3000000000));
    EXPECT_EQ(propertiesOf(review), "creationTime=3000000000 rating=4.5");
    EXPECT_EQ(review.creationTime(), at(3000000000));
    for (const char *text : {"", "12 May", "-1", "4294967296"})
        EXPECT_EQ(ReviewAuxiliaryData(recordWith("creationTime", text)).creationTime(), at(0)) << text;
}
