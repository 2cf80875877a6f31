// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "protocol/PlacesBaseDecoder.h"
#include "support/Encoded.h"
#include "support/Wire.h"

#include <gmock/gmock.h>

#include <limits>
#include <msgclient.h>

using namespace orix_places_protocol;
using namespace wire;

namespace
{

PlacesBaseDecoder &load(PlacesBaseDecoder &decoder, const std::string &bytes)
{
    PlacesBaseDecoder loaded(bytes.data(), static_cast<unsigned>(bytes.size()));
    decoder = loaded;
    return decoder;
}

} // namespace

TEST(WireBuffer, FieldsStartOnFourByteBoundariesBehindTheFill)
{
    PlacesBaseEncoder encoder;
    encoder.encodeString("Basel");
    encoder.encode(7);
    encoder.encode(true);
    encoder.encode(0x1122334455667788LL);
    encoder.encode(false);
    encoder.encode(1.5F);
    EXPECT_EQ(bytesOf(encoder),
              message({text("Basel"), i32(7), flag(true), i64(0x1122334455667788LL), flag(false), f32(1.5F)}));
    EXPECT_EQ(bytesOf(encoder).substr(9, 3), "ZZZ");
}

TEST(WireBuffer, AMessageNearTheLimitCannotBeAllocated)
{
    PlacesBaseEncoder encoder;
    EXPECT_THROW(encoder.ensureBuffer(0x7F000001U, false), std::bad_alloc);
    EXPECT_THROW(encoder.ensureBuffer(0xFFFFFFFFU, true), std::bad_alloc);
}

TEST(WireBuffer, TextIsUtf8InEveryLengthAndPlane)
{
    const QString texts[] = {QString(),
                             QStringLiteral("a"),
                             QStringLiteral("Zürich"),
                             QStringLiteral("東京"),
                             QString::fromUtf8("\xF0\x9F\x98\x80 abcdefg \xF0\x9F\x98\x80"),
                             QString(QChar(0xD83D)) + QStringLiteral("abc"),
                             QStringLiteral("abc") + QChar(0xDC00),
                             QString(5000, QChar(0x20AC)),
                             QString(749, QLatin1Char('x'))};
    for (const QString &value : texts) {
        PlacesBaseEncoder encoder;
        encoder.encode(true);
        encoder.encodeQString(value);
        EXPECT_EQ(bytesOf(encoder), message({flag(true), text(value.toUtf8().toStdString())}))
            << qPrintable(value.left(20));
    }
}

TEST(WireBuffer, EveryPrimitiveComesBackAsItWent)
{
    PlacesBaseDecoder decoder;
    load(decoder, message({flag(true), i64(-3), i32(std::numeric_limits<int>::min()), text("Bern"), text(""), f64(-0.1),
                           f64(46.9), f64(1), f64(2), f64(3), f32(4), f32(5), text("Zürich")}));
    bool yes = false;
    long long big = 0;
    int number = 0;
    std::string first;
    std::string second = "not empty";
    double numbers[5] = {};
    float accuracies[2] = {};
    QString name;
    EXPECT_TRUE(decoder.decode(yes) && decoder.decode(big) && decoder.decode(number)
                && decoder.decodeStringPair(first, second) && decoder.decodeLatLon(numbers[0], numbers[1])
                && decoder.decodeCoordinate(numbers[2], numbers[3], numbers[4], accuracies[0], accuracies[1])
                && decoder.decodeQString(name));
    EXPECT_TRUE(yes);
    EXPECT_EQ(big, -3);
    EXPECT_EQ(number, std::numeric_limits<int>::min());
    EXPECT_EQ(first, "Bern");
    EXPECT_EQ(second, "");
    EXPECT_THAT(numbers, testing::ElementsAre(-0.1, 46.9, 1, 2, 3));
    EXPECT_THAT(accuracies, testing::ElementsAre(4, 5));
    EXPECT_EQ(name, QStringLiteral("Zürich"));
    EXPECT_TRUE(decoder.testBuffer());
}

TEST(WireBuffer, AnyByteButZeroIsTrue)
{
    PlacesBaseDecoder decoder;
    bool value = false;
    EXPECT_TRUE(load(decoder, "\x02").decode(value));
    EXPECT_TRUE(value);
}

TEST(WireBuffer, ReadsThatCannotBeAreRefusedAndChangeNothing)
{
    const struct
    {
        const char *name;
        std::string bytes;
    } cases[] = {
        {"no message", ""},
        {"too short", std::string("\1\0\0", 3)},
        {"text longer than the rest", message({i32(4)}) + "abc"},
        {"length of the largest int", message({i32(0x7fffffff)}) + "abcdefgh"},
        {"length that would wrap with its fill", message({i32(-1)}) + "abcdefgh"},
        {"length of the smallest int", message({i32(std::numeric_limits<int>::min())}) + "abcdefgh"},
    };
    for (const auto &row : cases) {
        PlacesBaseDecoder decoder;
        std::string text = "before";
        EXPECT_FALSE(load(decoder, row.bytes).decodeString(text)) << row.name;
        EXPECT_EQ(text, "before") << row.name;
    }
    int value = 7;
    EXPECT_FALSE(PlacesBaseDecoder(nullptr, 4).decode(value));
    const _msgserver_data none = {nullptr, 4};
    EXPECT_FALSE(PlacesBaseDecoder(&none).decode(value) || PlacesBaseDecoder(nullptr).decode(value));
    EXPECT_EQ(value, 7);
}

TEST(WireBuffer, EveryFillByteHasToBeRight)
{
    const std::string good = message({flag(true), i32(9)});
    for (std::size_t wrong = 1; wrong <= 3; ++wrong) {
        std::string bytes = good;
        bytes[wrong] = '\0';
        PlacesBaseDecoder decoder;
        bool flag = false;
        int value = 0;
        EXPECT_TRUE(load(decoder, bytes).decode(flag));
        EXPECT_FALSE(decoder.decode(value)) << wrong;
        EXPECT_EQ(value, 0);
    }
}

TEST(WireBuffer, AMessageBelongsToOneDecoder)
{
    const std::string bytes = message({i32(1), i32(2)});
    PlacesBaseDecoder source(bytes.data(), static_cast<unsigned>(bytes.size()));
    PlacesBaseDecoder target;
    int value = 0;
    EXPECT_TRUE(source.decode(value));
    target = source;
    EXPECT_FALSE(source.decode(value));
    EXPECT_TRUE(target.decode(value));
    EXPECT_EQ(value, 2);
}
