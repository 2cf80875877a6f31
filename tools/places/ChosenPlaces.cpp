// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "ChosenPlaces.h"

#include <places/Place.h>
#include <places/PlaceManager.h>

#include <memory>

namespace tool
{

using namespace places;

namespace
{

ExitStatus reportFound(Error::Type error, bool isEmpty)
{
    if (error == Error::Success && isEmpty)
        reportNoneShown(false);
    return error == Error::Success && isEmpty ? Failed : report(error, QStringLiteral("find"));
}

} // namespace

ExitStatus collectChosen(const PlaceChoice &choice, std::vector<qint64> &ids)
{
    ids = choice.ids;
    if (!ids.empty())
        return Done;
    const Error::Type error = choice.forEach({}, [&ids](const AbstractPlace &place) {
        ids.push_back(place.id());
        return true;
    });
    return reportFound(error, ids.empty());
}

ExitStatus listPlaces(const std::vector<qint64> &ids, bool hasMore, const ListForm &form)
{
    ExitStatus status = Done;
    std::vector<std::unique_ptr<Place>> found;
    formats::PlaceList places;
    for (const qint64 id : ids) {
        Error::Type error = Error::Success;
        std::unique_ptr<Place> place(PlaceManager().getPlace(id, &error));
        if (!place) {
            status = report(error, nameOfPlace(id));
            continue;
        }
        places.append(place.get());
        found.push_back(std::move(place));
    }
    if (!places.isEmpty() || status == Done)
        printPlaces(places, hasMore, form);
    return status;
}

ExitStatus listChosen(const PlaceChoice &choice, Form form)
{
    std::vector<qint64> ids;
    const ExitStatus status = collectChosen(choice, ids);
    return status == Done ? listPlaces(ids, false, {form, {}, choice.centre}) : status;
}

} // namespace tool
