// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "auxdata/AuxiliaryDataPrivate.h"
#include "places/ContactAuxiliaryData.h"
#include "places/PointOfInterestAuxiliaryData.h"

#include <gmock/gmock.h>

#include <limits>

using namespace vela::platform::places;

namespace
{

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

/// Which keys are also found in their legacy spelling is part of the stored format.
TEST(ContactAuxiliaryData, ReadsEachKeyInTheSpellingsItHas)
{
    using Contact = ContactAuxiliaryData;
    const struct
    {
        const char *key;
        QString (Contact::*get)() const;
        bool legacy;
    } keys[] = {
        {"fax", &Contact::fax, true},
        {"email", &Contact::emailAddress, false},
        {"photolarge", &Contact::photoPathLarge, true},
    };
    for (const auto &row : keys) {
        const std::string framed = ";" + std::string(row.key) + ";";
        EXPECT_EQ((Contact(recordWith(row.key, "é")).*row.get)(), QStringLiteral("é")) << row.key;
        EXPECT_EQ((Contact(recordWith(framed.c_str(), "é")).*row.get)().isEmpty(), !row.legacy) << row.key;
    }
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
    const struct
    {
        const char *key;
        QString (Poi::*get)() const;
        bool legacy;
    } keys[] = {
        {"fax", &Poi::fax, true},
        {"phoneNumber", &Poi::phoneNumber, false},
        {"openingHoursStr", &Poi::openingHoursString, true},
        {"paymentMethodText", &Poi::paymentMethodText, true},
    };
    for (const auto &row : keys) {
        const std::string framed = ";" + std::string(row.key) + ";";
        EXPECT_EQ((poiWith(row.key, "é").*row.get)(), QStringLiteral("é")) << row.key;
        EXPECT_EQ((poiWith(framed.c_str(), "é").*row.get)().isEmpty(), !row.legacy) << row.key;
    }
    EXPECT_TRUE(Poi().isValid());
    EXPECT_FALSE(Poi(recordWith("name", "n", AuxiliaryData::TypeContact)).isValid());
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
