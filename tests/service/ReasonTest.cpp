// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "places/Place.h"
#include "places/PlaceManager.h"
#include "protocol/PlacesAPIDecoder.h"
#include "protocol/Protocol.h"
#include "support/Placesd.h"
#include "support/Requests.h"
#include "support/SamplePlace.h"

#include <gmock/gmock.h>

#include <SQLiteCpp/SQLiteCpp.h>

using namespace requests;
using namespace vela::platform::places;
using testing::HasSubstr;
using testing::StartsWith;

namespace
{

constexpr char OPEN[] = "places.external";

struct Refusal
{
    int code = -1;
    std::string reason;
};

Refusal exchange(const std::string &request, const char *channel = "places")
{
    const std::string reply = Placesd::exchange(request, channel);
    orix_places_protocol::PlacesAPIDecoder decoder(reply.data(), static_cast<unsigned int>(reply.size()));
    orix_places_protocol::ReturnCode code = orix_places_protocol::NoStatus;
    Refusal refusal;
    EXPECT_TRUE(decoder.decodeResponse(code));
    refusal.code = code;
    if (decoder.remaining() > 0 && code != orix_places_protocol::Success) {
        EXPECT_TRUE(decoder.decodeString(refusal.reason));
        EXPECT_TRUE(decoder.testBuffer());
    }
    return refusal;
}

std::string fetch(qint64 id)
{
    return message(head(12) + Fields{i64(id), text(""), text(""), text("")});
}

qint64 add(bool isPrivate)
{
    Place place;
    sample::fill(place, PlaceId::UNDEFINED_PERSISTED_ID);
    PlacePrivate::privateFromPublic(&place)->m_securityPerimeter = vela::system::SecurityPerimeter::Default;
    place.setName(QStringLiteral("Hideout"));
    place.setPrivate(isPrivate);
    EXPECT_EQ(PlaceManager().addPlace(&place), Error::Success);
    return place.id();
}

} // namespace

TEST(AReason, TellsTheOpenChannelOnlyOfItsOwnRequest)
{
    const Placesd service;
    const std::string database = service.path("places.db").toStdString();
    const qint64 open = add(false);
    const qint64 hidden = add(true);
    EXPECT_EQ(exchange(fetch(hidden), OPEN).reason, "no place has the id " + std::to_string(hidden));
    EXPECT_EQ(exchange(fetch(99), OPEN).reason, "no place has the id 99");
    EXPECT_THAT(exchange(message(head(4) + Fields{i64(open)}), OPEN).reason, HasSubstr("that you added"));
    EXPECT_THAT(exchange(message(head(15) + Fields{text("/x")}), OPEN).reason, HasSubstr("the owner's channel"));
    EXPECT_THAT(exchange(message({i32(13)})).reason, HasSubstr("ends before its last field"));
    EXPECT_THAT(exchange(message(head(77)), OPEN).reason, HasSubstr("type 77"));

    SQLite::Database(database, SQLite::OPEN_READWRITE).exec("DROP TABLE record");
    const Refusal ofGuest = exchange(fetch(open), OPEN);
    EXPECT_EQ(ofGuest.code, orix_places_protocol::StorageFailed);
    EXPECT_EQ(ofGuest.reason, "") << "paths and the words of SQLite are the owner's";
    const Refusal ofOwner = exchange(fetch(open));
    EXPECT_EQ(ofOwner.code, orix_places_protocol::StorageFailed);
    EXPECT_THAT(ofOwner.reason, StartsWith(database + ": "));
}

TEST(AReason, IsOneLineThatIsNeverTooLong)
{
    const Placesd service;
    const auto backup = [](const std::string &path) {
        const Refusal refusal = exchange(message(head(15) + Fields{text(path)}));
        EXPECT_EQ(refusal.code, orix_places_protocol::BackupFailed);
        EXPECT_LE(refusal.reason.size(), orix_places_protocol::REASON_SIZE);
        const QByteArray bytes = QByteArray::fromStdString(refusal.reason);
        EXPECT_EQ(QString::fromUtf8(bytes).toUtf8(), bytes) << "it ends with a whole character";
        return refusal.reason;
    };
    EXPECT_GT(backup("none/" + std::string(600, '\xFF')).size(), 1000U) << "each byte became three";
    EXPECT_THAT(backup("/none/" + std::string(3000, 'x') + "/copy.db"), HasSubstr("xxx is no folder"));
    EXPECT_THAT(backup("a\n\x1b[31m\x7F\xE2\x80\xA8z"), StartsWith("a  [31m  z is no absolute path"));
}

TEST(AReason, SaysWhichRuleAPlaceBreaks)
{
    const Placesd service;
    const qint64 id = add(false);
    EXPECT_EQ(PlaceManager().addTag(id, QString()), Error::PlaceNotAcceptable);
    EXPECT_THAT(Error::reason(Error::PlaceNotAcceptable).toStdString(), HasSubstr("an empty tag"));
    EXPECT_EQ(PlaceManager().addTag(id + 1, QStringLiteral("beach")), Error::NotFound);
    EXPECT_EQ(Error::reason(Error::NotFound), QStringLiteral("no place has the id %1").arg(id + 1));
    EXPECT_EQ(PlaceManager().addTag(id, QString(5000, QLatin1Char('x'))), Error::LimitExceeded);
    EXPECT_THAT(Error::reason(Error::LimitExceeded).toStdString(), HasSubstr("a text has 5000 UTF-16 units"));
    EXPECT_EQ(PlaceManager().addTag(id, QStringLiteral("beach")), Error::Success);
    EXPECT_EQ(Error::reason(Error::LimitExceeded), QString());
}
