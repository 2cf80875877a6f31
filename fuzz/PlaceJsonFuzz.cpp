// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

// Any bytes result in a place or a reason. The document of a place restores the same place.

#include "places/PlaceJson.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

using namespace vela::platform::places;

namespace
{

void require(bool holds)
{
    if (!holds)
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray document(reinterpret_cast<const char *>(data), static_cast<int>(size));
    Error::Type error = Error::Unspecified;
    QString reason;
    const auto place = PlaceJson::read(document, &error, &reason);
    require((place != nullptr) == (error == Error::Success));
    require((place != nullptr) == reason.isEmpty());
    if (!place)
        return 0;
    const QByteArray first = PlaceJson::write(*place);
    const auto again = PlaceJson::read(first);
    require(again != nullptr);
    const QByteArray second = PlaceJson::write(*again);
    require(PlaceJson::write(*PlaceJson::read(second)) == second);
    return 0;
}
