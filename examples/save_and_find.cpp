// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

// Saves a place, finds it, and prints a link that shows it on a map.

#include <places/Place.h>
#include <places/PlaceHeader.h>
#include <places/PlaceManager.h>

#include <iostream>

using namespace vela::platform::places;

int main()
{
    Location location;
    location.setCoordinates(Coordinates(46.9480, 7.4474));
    Place place;
    place.setName(QStringLiteral("Old town"));
    place.addLocation(location);

    const PlaceManager manager;
    Error::Type error = manager.addPlace(&place);
    if (error != Error::Success) {
        std::cerr << qPrintable(errorString(error)) << "\n";
        return error;
    }
    const auto headers = manager.findPlaces(QStringLiteral("old t"), &error);
    for (const PlaceHeader *found : headers) {
        std::cout << found->id() << " " << qPrintable(found->name()) << "\n"
                  << found->mapUrl().toEncoded().constData() << "\n";
        delete found;
    }
    return error;
}
