// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "sources/ContactBook.h"

#include "formats/Input.h"
#include "formats/VCardFile.h"
#include "Limits.h"
#include "places/ContactAuxiliaryData.h"
#include "places/Place.h"
#include "places/Tags.h"
#include "sources/Gazetteer.h"
#include "support/Files.h"
#include "support/VCards.h"

#include <gmock/gmock.h>

#include <QtCore/QTemporaryDir>

#include <chrono>
#include <functional>
#include <optional>
#include <thread>

using files::card;
using namespace placesd;
using namespace vela::platform::places;
using testing::ElementsAre;

namespace
{

const QByteArray ANNA = card(
    "UID:anna\r\nFN:Anna M\u00FCller\r\nN:M\u00FCller;Anna;B;;\r\nNICKNAME:Annie\r\nORG:Acme\r\nTITLE:Engineer\r\n"
    "TEL;TYPE=CELL:+41 79\r\nTEL;TYPE=HOME,FAX:+41 2\r\nTEL;TYPE=HOME:+41 44\r\nTEL;TYPE=WORK,FAX:+41 1\r\n"
    "TEL;TYPE=WORK:+41 31\r\nEMAIL:anna@example.org\r\nURL:https://anna.example/\r\nNOTE:from school\r\n"
    "PHOTO;VALUE=URI:file:///photos/anna.jpg\r\n"
    "ADR;TYPE=HOME:;2nd floor;Seestrasse 1;Z\u00FCrich;ZH;8001;Schweiz\r\n"
    "ADR;TYPE=WORK:;;Rue 2;Nowhere;;1200;Switzerland\r\nADR;TYPE=WORK:PO 3;;;Z\u00FCrich;;;\r\nADR:;;;Bern;;;\r\n");

/// A folder of cards, and a gazetteer of one city.
class ContactBookTest : public testing::Test
{
protected:
    ContactBookTest() { write("anna.vcf", ANNA); }
    void SetUp() override { NEEDS_VCARDS(); }
    /// True when the condition holds in time. During the first reading, which has its own thread, finds use the
    /// previous contacts.
    static bool eventually(const std::function<bool()> &holds)
    {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
        while (!holds() && std::chrono::steady_clock::now() < end)
            std::this_thread::yield();
        return holds();
    }
    QString path(const char *name) const { return folder.filePath(QLatin1String(name)); }
    void write(const char *name, const QByteArray &cards) const { files::write(path(name), cards); }
    std::vector<FoundPlace> find(const char *term = "", bool onlyRooms = false)
    {
        const QString words = QString::fromUtf8(term);
        return *book->find(TermTest(words, {{Wording::of(words)}, false}), onlyRooms, Deadline::max());
    }
    std::vector<std::string> names(const char *term = "", bool onlyRooms = false)
    {
        std::vector<std::string> names;
        for (const FoundPlace &place : find(term, onlyRooms))
            names.push_back(place->name().toStdString());
        return names;
    }
    QString annasId() { return find("anna").at(0)->auxiliaryData(0).externalId(); }

    /// A loaded gazetteer of one city.
    std::unique_ptr<Gazetteer> makeCities()
    {
        write("cities.json",
              R"({"type":"FeatureCollection","features":[{"type":"Feature","geometry":{"type":"Point",)"
              R"("coordinates":[8.5,47.4]},"properties":{"name":"Z\u00FCrich","kind":"city","city":"Z\u00FCrich",)"
              R"("country":"Switzerland","countryCode":"CH","population":400000}}]})");
        auto made = std::make_unique<Gazetteer>(std::vector<std::string>{path("cities.json").toStdString()},
                                                path("index").toStdString());
        ProviderSearch all;
        all.count = 1;
        EXPECT_EQ(made->search(all).places.size(), 1U);
        return made;
    }

    QTemporaryDir folder;
    const std::unique_ptr<Gazetteer> cities = makeCities();
    std::optional<ContactBook> book{std::in_place, folder.path().toStdString(), cities.get()};
};

} // namespace

TEST_F(ContactBookTest, AddressesBecomePlacesWithAllValuesOfTheCard)
{
    const QString contact = annasId().section(QLatin1Char(','), 1, 1);
    const struct
    {
        const char *number;
        const char *tag;
        const char *address; ///< Room, street, city, region, code, country, its code.
        bool isFound;
    } cases[] = {
        {"1", "home", "2nd floor|Seestrasse 1|Z\u00FCrich|ZH|8001|Schweiz|CH", true},
        {"0", "home", "2nd floor|Seestrasse 1|Z\u00FCrich|ZH|8001|Schweiz|CH", true},
        {"2", "work", "|Rue 2|Nowhere||1200|Switzerland|CH", false},
        {"5", "work", "|PO 3|Z\u00FCrich||||", true},
        {"3", "", "||Bern||||", false},
        {"4", nullptr, "", false},
    };
    for (const auto &row : cases) {
        const FoundPlace place =
            book->place(QStringLiteral("1,%1,").arg(contact) + QLatin1String(row.number), Deadline::max());
        ASSERT_EQ(place != nullptr, row.tag != nullptr) << row.number;
        if (!place)
            continue;
        EXPECT_EQ(place->hasTag(Tags::Home), row.tag == std::string("home")) << row.number;
        EXPECT_EQ(place->hasTag(Tags::Work), row.tag == std::string("work")) << row.number;
        const Address address = place->primaryAddress();
        const QStringList parts = {address.room(),
                                   address.street(),
                                   address.city(),
                                   address.region(),
                                   address.postalCode(),
                                   address.country(),
                                   address.isoAlpha2CountryCode()};
        EXPECT_EQ(parts.join(QLatin1Char('|')).toStdString(), row.address);
        EXPECT_EQ(place->hasCoordinates(), row.isFound) << row.number;
        EXPECT_EQ(place->source(), AbstractPlace::SourceContactService);
        EXPECT_THAT(place->aliases(), ElementsAre(QStringLiteral("Annie")));
        const ContactAuxiliaryData data(place->auxiliaryData(0));
        const QStringList texts = {data.firstName(),    data.lastName(),  data.company(),          data.title(),
                                   data.emailAddress(), data.homePhone(), data.workPhone(),        data.mobilePhone(),
                                   data.fax(),          data.notes(),     data.photoPathOriginal()};
        EXPECT_EQ(
            texts.join(QLatin1Char('|')).toStdString(),
            "Anna|M\u00FCller|Acme|Engineer|anna@example.org|+41 44|+41 31|+41 79|+41 2|from school|/photos/anna.jpg");
    }
}

TEST_F(ContactBookTest, AnAddressHasItsCountryAndPosition)
{
    const struct
    {
        const char *lines;
        const char *code;
        double latitude; ///< 0 for none.
    } cases[] = {
        {"ADR:;;;Z\u00FCrich;;;", "", 47.4},          {"ADR:;;;Z\u00FCrich;;; ", "", 47.4},
        {"ADR:;;;Z\u00FCrich;;;Polska", "PL", 0},     {"ADR:;;;Z\u00FCrich;;;Suisse", "CH", 47.4},
        {"ADR:;;;Z\u00FCrich;;;World", "", 0},        {"ADR:;;;Z\u00FCrich;;;ch", "CH", 47.4},
        {"ADR:;;;Z\u00FCrich;;;c1", "", 0},           {"GEO:46.5;7.5", "", 46.5},
        {"GEO:46.5;7.5\r\nADR:;;;Bern;;;", "", 46.5}, {"GEO:46.5;7.5\r\nADR:;;;Bern;;;\r\nADR:;;;Genf;;;", "", 0},
    };
    QByteArray note("NOTE:"); // Changes the size: a file is read again when size or time change, and the time may not.
    for (const auto &row : cases) {
        note += 'x';
        write("one.vcf", card(QByteArray("FN:One\r\n") + row.lines + "\r\n" + note + "\r\n"));
        EXPECT_TRUE(eventually([&] {
            const std::vector<FoundPlace> found = find("one");
            return !found.empty() && found[0]->primaryAddress().isoAlpha2CountryCode() == QLatin1String(row.code)
                   && (found[0]->hasCoordinates() ? found[0]->primaryCoordinates().latitude() : 0) == row.latitude;
        })) << row.lines;
    }
    QByteArray many;
    for (int i = 0; i <= limits::CONTACT_ADDRESSES; ++i)
        many += "ADR:;;Street " + QByteArray::number(i) + ";;;;\r\n";
    write("one.vcf", card("FN:One\r\n" + many));
    EXPECT_TRUE(eventually([&] { return find("one").size() == std::size_t{limits::CONTACT_ADDRESSES}; }));
}

TEST_F(ContactBookTest, IsReadAgainWhenItsFolderChanges)
{
    const QString id = annasId();
    write("bob.vcf", card("UID:bob\r\nFN:Bob\r\nADR;TYPE=HOME:;;;Berlin;;;Germany\r\n"));
    EXPECT_TRUE(eventually([&] { return names("bob berlin") == std::vector<std::string>{"Bob"}; }));
    write("bob.vcf", card("UID:bob\r\nKIND:Location\r\nORG:Robert\r\nADR;TYPE=HOME:;;;Berlin;;;Germany\r\n"));
    write("notes.txt", card("FN:No card\r\nADR:;;;Bern;;;\r\n"));
    EXPECT_TRUE(eventually([&] { return names("bob").empty(); }));
    EXPECT_THAT(names(""),
                ElementsAre("Anna M\u00FCller", "Anna M\u00FCller", "Anna M\u00FCller", "Anna M\u00FCller", "Robert"));
    EXPECT_THAT(names("", true), ElementsAre("Robert")) << "a room";
    EXPECT_TRUE(book->vocabulary(Deadline::max())->contains("berlin"));
    QFile::rename(path("anna.vcf"), path("z.vcf"));
    EXPECT_EQ(annasId(), id) << "the number of a contact does not depend on the position of its card";
    book.emplace(folder.path().toStdString(), cities.get());
    EXPECT_EQ(annasId(), id) << "nor on the start";
    EXPECT_TRUE(book->isRead());
    ASSERT_TRUE(QFile::rename(folder.path(), folder.path() + QStringLiteral("x")));
    EXPECT_TRUE(eventually([&] { return names().empty(); }));
    ASSERT_TRUE(QFile::rename(folder.path() + QStringLiteral("x"), folder.path()));
    EXPECT_TRUE(eventually([&] { return names().size() == 5U; }));
}

TEST(VCardFile, ValidPartsOfAnInvalidCardAreRead)
{
    const QTemporaryDir folder;
    const QByteArray longest(formats::MAX_VCARD_LINE_SIZE - 4, 'x');
    const auto lines = [](int count) { return QByteArray("A:b\n").repeated(count); };
    const auto filled = [&](int rest) {
        return QByteArray("X:" + QByteArray(16379, 'x') + "\n").repeated(16).chopped(1 + rest) + "\n";
    };
    const struct
    {
        const char *name;
        QByteArray bytes;
        std::vector<int> lines; ///< Of each valid card.
        int leftOut = 0;
        int cut = 0;
    } cases[] = {
        {"none", "x\nEND:VCARD\n", {}},
        {"two", card("A:b\r\n") + "between\n" + card("A:b\r\nC:d\r\n"), {4, 5}},
        {"small letters", "begin:vcard\nend:vcard\n", {2}},
        {"no end", "BEGIN:VCARD\nA:b\nBEGIN:VCARD\nEND:VCARD\nBEGIN:VCARD\nA:b", {3, 2, 3}, 0, 2},
        {"an end within a line", "BEGIN:VCARD\nA:bBEGIN:VCARD\nEND:VCARD\n", {3, 2}, 0, 1},
        {"the longest line", "BEGIN:VCARD\nA:" + longest + "b\nEND:VCARD\n", {3}},
        {"a longer one", "BEGIN:VCARD\nA:" + longest + "bc\nB:c\nEND:VCARD\n", {3}, 1},
        {"a longer folded one", "BEGIN:VCARD\nA:" + longest + "\n b\n\tc\nB:c\nEND:VCARD\n", {3}, 1},
        {"a long picture", "BEGIN:VCARD\nitem1.Photo;ENCODING=b:" + longest.repeated(9) + "\nEND:VCARD\n", {2}},
        {"most lines",
         "BEGIN:VCARD\n" + lines(formats::MAX_VCARD_LINES - 1) + "END:VCARD\n",
         {formats::MAX_VCARD_LINES + 1}},
        {"too many lines",
         "BEGIN:VCARD\n" + lines(formats::MAX_VCARD_LINES + 1) + "END:VCARD\n",
         {formats::MAX_VCARD_LINES + 1},
         2},
        {"all together", "BEGIN:VCARD\n" + filled(0) + "Y:" + QByteArray(9999, 'y') + "\nEND:VCARD\n", {18}, 1},
    };
    for (const auto &row : cases) {
        const QString path = folder.filePath(QStringLiteral("cards"));
        files::write(path, row.bytes);
        formats::Input file(path);
        std::vector<int> taken;
        int leftOut = 0;
        int cut = 0;
        EXPECT_TRUE(formats::splitVCards(file, [&](const formats::CardText &one) {
            taken.push_back(static_cast<int>(one.text.trimmed().count('\n')) + 1);
            leftOut += one.leftOut;
            cut += one.isCut ? 1 : 0;
            return true;
        })) << row.name;
        EXPECT_EQ(taken, row.lines) << row.name;
        EXPECT_EQ(leftOut, row.leftOut) << row.name;
        EXPECT_EQ(cut, row.cut) << row.name;
    }
}
