// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "support/Sources.h"
#include "support/Client.h"
#include "support/Placesd.h"

#include <gmock/gmock.h>

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

using testing::HasSubstr;
using testing::Not;

namespace
{

QJsonArray list(const char *arguments)
{
    return QJsonDocument::fromJson(QByteArray::fromStdString(places(arguments).out)).array();
}

/// What comes from elsewhere than from the user: contacts, providers, records, backups.
class SourcesTest : public testing::Test
{
protected:
    Sources sources;
    Placesd service{sources.arguments()};
};

} // namespace

TEST_F(SourcesTest, ContactsAreListedByNameAndFoundByWord)
{
    const std::string all = places("contacts").out;
    EXPECT_LT(all.find("Anna"), all.find("Zoe")) << all;
    EXPECT_THAT(places("contacts zo").out, Not(HasSubstr("Anna")));
    EXPECT_THAT(places("contacts --limit 1").err, HasSubstr("there are more"));
    EXPECT_THAT(places("--json contacts ann").out, HasSubstr("\"city\":\"Zug\""));
}

TEST_F(SourcesTest, ProvidersAreAskedForWhatTheyKnowOfAPlace)
{
    const QJsonObject provider = list("--json providers")[0].toObject();
    EXPECT_EQ(provider[QLatin1String("supportedDataTypes")].toArray(), QJsonArray{QLatin1String("poi")});
    EXPECT_EQ(places("--json providers --type POI").out, "[]\n") << "the case of a type counts";

    EXPECT_EQ(places(QStringList{QStringLiteral("import"), sources.gazetteer()}).status, 0);
    EXPECT_THAT(places("show 1 --aux").out, HasSubstr("city"));
    const QJsonArray remote = list("--json show 1 --aux --remote");
    ASSERT_EQ(remote.size(), 1);
    EXPECT_EQ(remote[0].toObject()[QLatin1String("provider")], QLatin1String("gazetteer"));
    EXPECT_EQ(remote[0].toObject()[QLatin1String("externalId")], QLatin1String("town:1"));
    EXPECT_EQ(list("--json show 1 --aux --type contact").size(), 0);
    EXPECT_EQ(places("show 99 --aux").status, 1);
    EXPECT_EQ(places("show geo:1,2 --aux").status, 2);
}

TEST_F(SourcesTest, ABackupIsWrittenAndReadWhereTheUserStands)
{
    const QString before = QDir::currentPath();
    QTemporaryDir folder;
    ASSERT_TRUE(QDir::setCurrent(folder.path()));
    EXPECT_EQ(places("add Lake --at 1,2").out, "1\n");
    EXPECT_EQ(places("backup saved.db").status, 0);
    EXPECT_TRUE(QFile::exists(folder.filePath(QStringLiteral("saved.db"))));
    EXPECT_EQ(places("remove 1").status, 0);
    EXPECT_EQ(places("restore saved.db").status, 0);
    EXPECT_THAT(places("find").out, HasSubstr("Lake"));
    const Outcome refused = places("restore nothing.db");
    EXPECT_EQ(refused.status, 1);
    EXPECT_THAT(refused.err, HasSubstr(folder.filePath(QStringLiteral("nothing.db")).toStdString()));
    QDir::setCurrent(before);
}
