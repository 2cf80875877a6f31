// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "formats/ExactJson.h"
#include "formats/Feature.h"
#include "formats/Format.h"
#include "formats/GeoJsonWriter.h"
#include "formats/Input.h"
#include "formats/VCardReader.h"
#include "formats/VCardWriter.h"
#include "MemoryFile.h"
#include "PlaceLink.h"

#include <places/Place.h>

#include <cstdlib>

// The first byte selects the kind of input: a file format, or a link or position. A place that is read must be
// unchanged after writing it as GeoJSON or vCard and reading it again.

namespace
{

using vela::platform::places::Place;

void checkRoundTrip(const Place &place)
{
    const QByteArray first = formats::toGeoJsonFeature(place);
    formats::ExactDocument feature;
    Place again;
    if (feature.read(first.constData()).IsError() || !formats::readFeature(feature, again).isEmpty()
        || formats::toGeoJsonFeature(again) != first)
        std::abort();
}

/// Importing the place's card restores the place.
void checkCard(const Place &place)
{
    const MemoryFile file(formats::toVCard(place));
    formats::Input input(file.path());
    int count = 0;
    (void)formats::readVCards(input, {}, [&](const formats::ReadPlace &read) {
        ++count;
        if (!read.place || formats::toGeoJsonFeature(*read.place) != formats::toGeoJsonFeature(place))
            std::abort();
        return true;
    });
    if (count != 1)
        std::abort();
}

void check(const Place &place)
{
    checkRoundTrip(place);
    checkCard(place);
}

void readLink(const QByteArray &text)
{
    Place place;
    const QString problem = tool::readLink(QString::fromUtf8(text), place);
    place.setName(QStringLiteral("a name"));
    if (problem.isEmpty() && place.hasPhysicalLocation())
        check(place);
}

void readFile(const formats::Format &format, const QByteArray &bytes)
{
    const MemoryFile file(bytes);
    formats::Input input(file.path());
    (void)format.read(input, {}, [](const formats::ReadPlace &read) {
        if (read.place && read.place->name() != QString())
            check(*read.place);
        return true;
    });
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size == 0)
        return 0;
    const QByteArray bytes(reinterpret_cast<const char *>(data) + 1, static_cast<int>(size - 1));
    const QStringList formats = formats::formatNames(false);
    if (data[0] == 'l')
        readLink(bytes);
    else
        readFile(*formats::formatByName(formats[static_cast<std::uint8_t>(data[0] - '0') % formats.size()]), bytes);
    return 0;
}
