// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "ResultSaver.h"

#include "PlaceRows.h"
#include "StoredMember.h"

#include <places/InternalPlaceManager.h>
#include <places/Place.h>
#include <places/PlaceManager.h>

#include <memory>
#include <vector>

namespace tool
{

using namespace places;

namespace
{

/// Stores the full place of a result, unless the same place is stored.
/// @param said what was done, for people.
std::unique_ptr<Place> stored(const AbstractPlace &result, Error::Type &error, QString &said)
{
    std::unique_ptr<Place> place(InternalPlaceManager().getPlace(&result, &error));
    if (!place)
        return nullptr;
    std::unique_ptr<Place> same = place->isPersisted() ? nullptr : findStoredMember(MemberKey::of(*place), error);
    if (same)
        place = std::move(same);
    if (place->isPersisted()) {
        said = QStringLiteral("%1 is stored already, as place %2").arg(nameOfPlace(*place)).arg(place->id());
        return place;
    }
    if (error == Error::Success)
        error = PlaceManager().addPlace(place.get());
    if (error != Error::Success)
        return nullptr;
    said = QStringLiteral("saved %1 as place %2").arg(nameOfPlace(*place)).arg(place->id());
    return place;
}

} // namespace

ExitStatus saveResults(const formats::PlaceList &results, const Context &context)
{
    ExitStatus status = Done;
    std::vector<std::unique_ptr<Place>> places;
    for (const AbstractPlace *result : results) {
        if (kindOf(*result) != ResultKind::Place) {
            status = fail(result->name(), QStringLiteral("a search term or category is not a place to save"));
            continue;
        }
        Error::Type error = Error::Success;
        QString said;
        std::unique_ptr<Place> place = stored(*result, error, said);
        if (!place) {
            status = report(error, result->name());
            continue;
        }
        if (context.form == Form::Table && !context.isQuiet)
            printLine(said);
        places.push_back(std::move(place));
    }
    if (context.form == Form::Json)
        printFeatures(places, results.size() > 1);
    return status;
}

} // namespace tool
