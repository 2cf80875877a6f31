// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "SourceFiles.h"

#include "PlaceMaker.h"
#include "places/Place.h"

#include <QtCore/QDir>

#include <array>
#include <fstream>

namespace bench
{

namespace
{

constexpr std::uint64_t GAZETTEER_SEED = 2;
constexpr std::uint64_t CONTACT_SEED = 3;

constexpr std::array<const char *, 20> GIVEN_NAMES = {
    "Anna",  "Boris", "Chiara", "David", "Elif", "Farid", "Grace", "Hiroko", "Ivan",   "Julia",
    "Kwame", "Lucia", "Mehmet", "Nina",  "Omar", "Paula", "Rosa",  "Sandra", "Stefan", "Tomas"};

} // namespace

void writeGazetteer(const QString &path, int places)
{
    PlaceMaker maker(GAZETTEER_SEED);
    std::ofstream file(path.toStdString());
    file << R"({"type":"FeatureCollection","features":[)";
    for (int i = 0; i < places; ++i)
        file << (i > 0 ? ",\n" : "\n") << maker.next().feature;
    file << "\n]}\n";
}

void writeContacts(const QString &folder, int contacts)
{
    QDir().mkpath(folder);
    PlaceMaker maker(CONTACT_SEED);
    for (int i = 0; i < contacts; ++i) {
        const char *given = GIVEN_NAMES[maker.below(GIVEN_NAMES.size())];
        const std::string family = maker.word().toStdString();
        const PlaceMaker::City &city = maker.city();
        std::ofstream file(folder.toStdString() + "/" + std::to_string(i) + ".vcf");
        file << "BEGIN:VCARD\r\nVERSION:3.0\r\nUID:made-" << i << "\r\nFN:" << given << " " << family
             << "\r\nN:" << family << ";" << given << ";;;\r\nADR;TYPE=HOME:;;Street " << i << ";"
             << city.name.toStdString() << ";;;" << city.country.toStdString() << "\r\nEND:VCARD\r\n";
    }
}

} // namespace bench
