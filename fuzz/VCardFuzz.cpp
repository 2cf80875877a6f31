// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "places/Place.h"
#include "sources/ContactPlaces.h"
#include "sources/VCardFile.h"

#include <QtCore/QBuffer>

#include <cstddef>
#include <cstdint>
#include <kcontacts/addressee.h>
#include <kcontacts/vcardconverter.h>

using namespace placesd;
using vela::platform::places::Address;
using vela::platform::places::Coordinates;

/// Each card that is read from any file is valid, and each place of it has a name and a location.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size)
{
    QByteArray text(reinterpret_cast<const char *>(bytes), static_cast<int>(size));
    QBuffer file(&text);
    file.open(QIODevice::ReadOnly);
    const KContacts::VCardConverter converter;
    readVCards(file, [&converter](const QByteArray &card) {
        if (!card.toUpper().startsWith("BEGIN:VCARD") || !card.trimmed().toUpper().endsWith("END:VCARD"))
            __builtin_trap();
        hasProperty(card, "UID");
        const auto nowhere = [](const Address &) { return Coordinates(); };
        for (const FoundPlace &place : placesOf(converter.parseVCard(card), 1, nowhere)) {
            if (place->name().isEmpty() || place->locationCount() != 1)
                __builtin_trap();
        }
    });
    return 0;
}
