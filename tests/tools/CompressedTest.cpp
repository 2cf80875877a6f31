// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "formats/ArchiveDevice.h"
#include "formats/Input.h"

#include <gmock/gmock.h>

#include <QtCore/QBuffer>
#include <QtCore/QByteArray>
#include <QtCore/QFile>
#include <QtCore/QTemporaryFile>

#include <string>

#include <unistd.h>

using formats::ArchiveDevice;
using formats::Compression;
using formats::Input;
using testing::HasSubstr;

namespace
{

/// Bytes that do not compress well.
QByteArray noise(int size)
{
    QByteArray bytes(size, '\0');
    quint32 state = 1;
    for (char &byte : bytes) {
        state = state * 1664525 + 1013904223;
        byte = static_cast<char>(state >> 24);
    }
    return bytes;
}

QByteArray compressed(Compression compression, const QByteArray &bytes, const char *member = "places.csv")
{
    QBuffer out;
    EXPECT_TRUE(out.open(QIODevice::WriteOnly));
    ArchiveDevice device(out, compression, QString::fromUtf8(member));
    EXPECT_EQ(device.write(bytes.left(1)) + device.write(bytes.mid(1)), bytes.size());
    EXPECT_EQ(device.finish(), QString());
    return out.data();
}

/// The local header of an empty file in a zip archive.
QByteArray emptyMember(const QByteArray &name)
{
    return QByteArray("PK\3\4\x14", 5) + QByteArray(21, '\0') + static_cast<char>(name.size()) + QByteArray(3, '\0')
           + name;
}

/// The result of reading a file with these bytes.
struct Outcome
{
    QByteArray bytes;
    std::string name;
    std::string problem;
};

Outcome readAll(Input &input)
{
    Outcome outcome;
    char buffer[1000];
    while (const std::size_t count = input.read(buffer, sizeof buffer))
        outcome.bytes.append(buffer, static_cast<int>(count));
    outcome.name = input.name().toStdString();
    outcome.problem = input.problem().toStdString();
    return outcome;
}

Outcome read(const QByteArray &bytes)
{
    QTemporaryFile file;
    EXPECT_TRUE(file.open() && file.write(bytes) == bytes.size() && file.flush());
    Input input(file.fileName());
    return readAll(input);
}

} // namespace

TEST(CompressedTest, AWrittenFileIsDetectedByItsContent)
{
    const QByteArray bytes = noise(300000) + QByteArray(300000, 'x');
    for (const char *ending : {"gz", "bz2", "xz", "zst", "zip"}) {
        const Compression compression = formats::compressionOf(QLatin1String("a.csv.") + QLatin1String(ending));
        const QByteArray file = compressed(compression, bytes);
        EXPECT_LT(file.size(), 400000) << ending;
        EXPECT_EQ(file, compressed(compression, bytes)) << "independent of the time: " << ending;
        const Outcome outcome = read(file);
        EXPECT_TRUE(outcome.bytes == bytes) << ending;
        EXPECT_EQ(outcome.problem, "") << ending;
        EXPECT_EQ(read(compressed(compression, "")).problem, "") << ending;
    }
    EXPECT_TRUE(read(compressed(Compression::Gzip, "a") + compressed(Compression::Gzip, "b")).bytes == "ab");
}

TEST(CompressedTest, OneFileOfAnArchiveIsRead)
{
    const auto archive = [](const char *name) { return compressed(Compression::Zip, name, name); };
    const auto member = [&](const char *name) { return archive(name).left(archive(name).indexOf("PK\1\2")); };
    QByteArray crowd;
    for (int i = 0; i < 100000; ++i)
        crowd += emptyMember("f" + QByteArray::number(i));
    const struct
    {
        QByteArray file;
        const char *name;
    } cases[] = {
        {member("a.csv") + member("b.kml") + member("c.kml") + archive("files/doc.kml"), "b.kml"},
        {member("b.kml") + archive("doc.kml"), "doc.kml"},
        {member("__MACOSX/._b.kml") + member("i.png") + member("\xC3\xA9.csv") + archive("b.csv"), "\xC3\xA9.csv"},
        {emptyMember("folder/") + archive("folder/a.json"), "folder/a.json"},
        {crowd + archive("a.gpx"), "a.gpx"},
        {member("a.gpx"), "a.gpx"},
    };
    for (const auto &row : cases) {
        const Outcome outcome = read(row.file);
        EXPECT_EQ(outcome.name, row.name);
        EXPECT_EQ(outcome.bytes.toStdString(), row.name);
        EXPECT_EQ(outcome.problem, "");
    }
}

TEST(CompressedTest, APipeIsReadWithoutSeeking)
{
    int ends[2] = {};
    ASSERT_EQ(::pipe(ends), 0);
    const QByteArray file = compressed(Compression::Zip, "x", "x.csv") + compressed(Compression::Zip, "y", "doc.kml");
    ASSERT_EQ(::write(ends[1], file.constData(), static_cast<std::size_t>(file.size())), file.size());
    ::close(ends[1]);
    Input input(QStringLiteral("/dev/fd/%1").arg(ends[0]));
    EXPECT_EQ(readAll(input).name, "x.csv");
    ::close(ends[0]);
}

TEST(CompressedTest, DamageIsReported)
{
    const QByteArray bytes = noise(200000);
    const auto changed = [](QByteArray file, int at) {
        file[at] = static_cast<char>(file[at] ^ 1);
        return file;
    };
    for (const char *ending : {"gz", "bz2", "xz", "zst", "zip"}) {
        const QByteArray file = compressed(formats::compressionOf(QLatin1String("a.") + QLatin1String(ending)), bytes);
        EXPECT_NE(read(file.left(file.size() / 2)).problem, "") << ending;
        // Zstandard writes no checksum.
        if (ending != std::string("zst")) {
            EXPECT_NE(read(changed(file, static_cast<int>(file.size() / 2))).problem, "") << ending;
        }
        EXPECT_NE(read(file.left(30)).problem, "") << ending;
    }
    // A block header that requires a dictionary of 4 GiB, with its CRC-32.
    QByteArray greedy = compressed(Compression::Xz, "abc");
    greedy.replace(12, 12, QByteArray::fromHex("0200210128000000e6a011b3"));
    const struct
    {
        QByteArray file;
        const char *says;
    } cases[] = {
        {compressed(Compression::Gzip, bytes).chopped(2), "the gzip file is cut"},
        {changed(compressed(Compression::Gzip, "abc"), 15), "the gzip file is damaged: incorrect"},
        {changed(compressed(Compression::Zip, "abc", "a.csv"), 6), "a.csv in the zip archive is encrypted"},
        {greedy, "needs more than 128 MiB of memory"},
        {compressed(Compression::Zip, "abc", "a.png"), "no file in the zip archive"},
        {QByteArray("PK\5\6") + QByteArray(18, '\0'), "no file in the zip archive"},
    };
    for (const auto &row : cases)
        EXPECT_THAT(read(row.file).problem, HasSubstr(row.says));
}

TEST(CompressedTest, AFullDiskIsReported)
{
    for (const Compression compression : {Compression::Gzip, Compression::Zip}) {
        QFile disk(QStringLiteral("/dev/full"));
        ASSERT_TRUE(disk.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
        ArchiveDevice device(disk, compression, QStringLiteral("a.txt"));
        const QByteArray bytes = noise(100000);
        const bool isWritten = device.isOpen() && device.write(bytes) == bytes.size();
        EXPECT_EQ(isWritten ? device.finish() : device.errorString(), QStringLiteral("No space left on device"));
    }
}
