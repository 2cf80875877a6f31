// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "formats/Input.h"
#include "formats/VCard.h"
#include "formats/VCardFile.h"
#include "MemoryFile.h"
#include "places/Place.h"
#include "sources/ContactPlaces.h"

#include <cstddef>
#include <cstdint>

using namespace placesd;
using vela::platform::places::Address;
using vela::platform::places::Coordinates;

/// For any file, each card is valid and each of its places has a name and a location.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size)
{
    const MemoryFile file(QByteArray(reinterpret_cast<const char *>(bytes), static_cast<int>(size)));
    formats::Input input(file.path());
    formats::splitVCards(input, [](const formats::CardText &card) {
        if (!card.text.toUpper().startsWith("BEGIN:VCARD") || !card.text.trimmed().toUpper().endsWith("END:VCARD"))
            __builtin_trap();
        const auto nowhere = [](const Address &) { return Coordinates(); };
        for (const FoundPlace &place : placesOf(formats::VCard(card.text), 1, nowhere)) {
            if (place->name().isEmpty() || place->locationCount() != 1)
                __builtin_trap();
        }
        return true;
    });
    return 0;
}
