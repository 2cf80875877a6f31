// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "formats/Position.h"
#include "PlaceLink.h"
#include "support/Files.h"

#include <places/Place.h>

#include <QtCore/QtNumeric>

namespace
{

using namespace vela::platform::places;

/// A text and what is read of it: the position with its accuracy, or why it is none; of a link, name and address, too.
QString lineOf(const QString &text)
{
    const formats::ReadPosition read = tool::readAnyPosition(text);
    QStringList found{read.problem};
    if (read.position.isValid())
        found += QStringLiteral("%1 %2")
                     .arg(read.position.latitude(), 0, 'g', 10)
                     .arg(read.position.longitude(), 0, 'g', 10);
    if (!qIsNaN(read.position.horizontalAccuracy()))
        found += QStringLiteral("within %1 m").arg(read.position.horizontalAccuracy(), 0, 'g', 3);
    Place place;
    (void)tool::readLink(text, place);
    for (const QString &part : {place.name(), place.primaryAddress().label()})
        found += part.isEmpty() ? QString() : QLatin1Char('"') + part + QLatin1Char('"');
    found.removeAll(QString());
    return text + QStringLiteral(" => ")
           + (found.isEmpty() ? QStringLiteral("no position") : found.join(QLatin1Char(' ')));
}

} // namespace

TEST(PositionTest, PositionsPlusCodesAndLinksAreReadWithoutANetwork)
{
    const QByteArray file = files::bytesOf(QStringLiteral(SOURCES "/tests/tools/data/positions.txt"));
    for (const QString &line : QString::fromUtf8(file).trimmed().split(QLatin1Char('\n'))) {
        if (!line.startsWith(QLatin1Char('#'))) {
            EXPECT_EQ(lineOf(line.section(QStringLiteral(" => "), 0, 0)).toStdString(), line.toStdString());
        }
    }
    EXPECT_EQ(lineOf(QString()).toStdString(), " => no position");
    EXPECT_TRUE(tool::readAnyPosition(QString(100000, QLatin1Char('1'))).problem.isEmpty());
}

TEST(PositionTest, AGeoUriIsRestoredExactly)
{
    Coordinates position(-1.0 / 3, 1e-7);
    position.setAltitude(-12.125);
    position.setHorizontalAccuracy(0.1F);
    const Coordinates read = formats::readGeoUri(formats::toGeoUri(position)).position;
    EXPECT_EQ(read.latitude(), position.latitude());
    EXPECT_EQ(read.longitude(), position.longitude());
    EXPECT_EQ(read.altitude(), position.altitude());
    EXPECT_EQ(read.horizontalAccuracy(), position.horizontalAccuracy());
}
