// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "formats/ExactJson.h"
#include "formats/Feature.h"
#include "formats/Format.h"
#include "formats/GeoJsonWriter.h"
#include "formats/Input.h"
#include "PlaceLink.h"

#include <places/Place.h>

#include <cstdlib>

#include <sys/mman.h>
#include <unistd.h>

// The first byte selects the kind of input: a file format or a link. A place that is read must be the same after
// writing it as GeoJSON and reading it again.

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

void readLink(const QByteArray &text)
{
    Place place;
    const QString problem = tool::readLink(QString::fromUtf8(text), place);
    place.setName(QStringLiteral("a name"));
    if (problem.isEmpty() && place.hasPhysicalLocation())
        checkRoundTrip(place);
}

void readFile(const formats::Format &format, const QByteArray &bytes)
{
    const int file = ::memfd_create("input", 0);
    if (file < 0 || ::write(file, bytes.constData(), static_cast<std::size_t>(bytes.size())) != bytes.size())
        std::abort();
    {
        formats::Input input(QStringLiteral("/proc/self/fd/%1").arg(file));
        (void)format.read(input, {}, [](const formats::ReadPlace &read) {
            if (read.place && read.place->name() != QString())
                checkRoundTrip(*read.place);
            return true;
        });
    }
    ::close(file);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size == 0)
        return 0;
    const QByteArray bytes(reinterpret_cast<const char *>(data) + 1, static_cast<int>(size - 1));
    const QStringList formats = formats::formatNames(false);
    const int choice = data[0] % (formats.size() + 1);
    if (choice == formats.size())
        readLink(bytes);
    else
        readFile(*formats::formatByName(formats[choice]), bytes);
    return 0;
}
