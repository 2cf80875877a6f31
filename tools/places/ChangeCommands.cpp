// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "Commands.h"

#include "formats/Feature.h"
#include "formats/JsonWriter.h"
#include "Options.h"
#include "PlaceLink.h"
#include "PlaceRecords.h"

#include <places/Place.h>
#include <places/PlaceManager.h>
#include <places/PointOfInterestAuxiliaryData.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tool
{

using namespace formats;
using namespace places;

namespace
{

/// Values of a place given as options. Values that are not given stay unchanged.
struct Details
{
    std::optional<std::string> name;
    std::optional<std::string> position;
    std::optional<std::string> description;
    std::optional<std::string> label;
    std::optional<std::string> street;
    std::optional<std::string> city;
    std::optional<std::string> region;
    std::optional<std::string> country;
    std::optional<std::string> countryCode;
    std::optional<std::string> postalCode;
    std::optional<std::string> phone;
    std::optional<std::string> email;
    std::optional<std::string> url;
    std::vector<std::string> tags;

    [[nodiscard]] bool hasValues() const
    {
        return name || position || description || label || street || city || region || country || countryCode
               || postalCode || phone || email || url || !tags.empty();
    }
};

void addDetailOptions(CLI::App &command, Details &details)
{
    command.add_option("--at", details.position, "Position: degrees in any usual form, plus code or link")
        ->transform(IsPosition);
    command.add_option("--description", details.description, "Description");
    command.add_option("--label", details.label, "The address as one line");
    command.add_option("--street", details.street, "Street and house number");
    command.add_option("--city", details.city, "City");
    command.add_option("--region", details.region, "State or province");
    command.add_option("--country", details.country, "Country");
    command.add_option("--country-code", details.countryCode, "Country as two letters");
    command.add_option("--postal-code", details.postalCode, "Postal code");
    command.add_option("--phone", details.phone, "Telephone number");
    command.add_option("--email", details.email, "E-mail address");
    command.add_option("--url", details.url, "Web address");
    addListOption(command, "--tag", details.tags, "Tag; may be given several times");
}

template <typename Object>
void set(Object &object, void (Object::*setter)(const QString &), const std::optional<std::string> &value)
{
    if (value)
        (object.*setter)(text(*value));
}

/// The first location with the changes applied; std::nullopt when no value is left in it.
std::optional<Location> changedLocation(const Place &place, const Details &details)
{
    Location location = place.locationCount() > 0 ? place.location(0) : Location();
    Address address = location.address();
    set(address, &Address::setLabel, details.label);
    set(address, &Address::setStreet, details.street);
    set(address, &Address::setCity, details.city);
    set(address, &Address::setRegion, details.region);
    set(address, &Address::setCountry, details.country);
    set(address, &Address::setIsoAlpha2CountryCode, details.countryCode);
    set(address, &Address::setPostalCode, details.postalCode);
    location.setAddress(address);
    if (details.position)
        location.setCoordinates(parsePosition(*details.position));
    if (location == Location())
        return std::nullopt;
    return location;
}

void applyContactDetails(Place &place, const Details &details)
{
    if (!details.phone && !details.email && !details.url)
        return;
    formats::changePointOfInterest(place, [&](PointOfInterestAuxiliaryData &poi) {
        set(poi, &PointOfInterestAuxiliaryData::setPhoneNumber, details.phone);
        set(poi, &PointOfInterestAuxiliaryData::setEmailAddress, details.email);
        if (details.url)
            poi.setUrl(QUrl(text(*details.url)));
    });
}

void apply(Place &place, const Details &details)
{
    set(place, &Place::setName, details.name);
    set(place, &Place::setDescription, details.description);
    for (const std::string &tag : details.tags)
        place.addTag(text(tag));
    applyContactDetails(place, details);
    const std::optional<Location> location = changedLocation(place, details);
    if (location && place.locationCount() > 0)
        place.replaceLocation(0, *location);
    else if (location)
        place.addLocation(*location);
}

/// True for a text that describes a whole place: a link, or a position when no option gives the position.
bool isWhole(const QString &text, const Details &details)
{
    if (isLink(text))
        return true;
    const formats::ReadPosition read = readAnyPosition(text);
    return (read.position.isValid() || !read.problem.isEmpty()) && !changedLocation(Place(), details);
}

/// Adds a place by its name, or the place of a position or link.
ExitStatus add(const QString &nameOrLink, const Details &details, Form form)
{
    Place place;
    place.setSource(AbstractPlace::SourceManualInput);
    if (!isWhole(nameOrLink, details)) {
        place.setName(nameOrLink);
    } else if (const QString problem = readLink(nameOrLink, place); !problem.isEmpty()) {
        complain(nameOrLink, problem);
        return WrongUse;
    }
    apply(place, details);
    if (!place.isValid()) {
        complain(nameOrLink, QStringLiteral("a place needs a position (--at) or an address (--city ...)"));
        return WrongUse;
    }
    const ExitStatus status = report(PlaceManager().addPlace(&place), place.name());
    if (status == Done && form == Form::Json)
        printPlace(place, form);
    else if (status == Done)
        printLine(QString::number(place.id()));
    return status;
}

/// Fetches a place and calls `work` with it.
template <typename Work>
ExitStatus withPlace(qint64 id, Work work)
{
    Error::Type error = Error::Success;
    const std::unique_ptr<Place> place(PlaceManager().getPlace(id, &error));
    return place ? work(*place) : report(error, nameOfPlace(id));
}

ExitStatus update(qint64 id, const Details &details, const Context &context)
{
    if (!details.hasValues())
        return misuse("update", QStringLiteral("nothing to change; give the new values as options"));
    return withPlace(id, [&](Place &place) {
        apply(place, details);
        const ExitStatus status = report(PlaceManager().updatePlace(&place), nameOfPlace(id));
        if (status == Done)
            printDone(context, "changed", 1, QStringLiteral("changed 1 place"));
        return status;
    });
}

struct ShowOptions
{
    std::vector<std::string> places;
    bool asDocument = false;
    bool records = false;
    std::string type;
    bool onlyRemote = false;
};

/// True for the id of a stored place.
bool isId(const QString &text)
{
    bool isNumber = false;
    (void)text.toLongLong(&isNumber);
    return isNumber;
}

/// Fetches a stored place, or creates an unsaved place from a position or link. Null on failure.
std::unique_ptr<Place> placeOf(const QString &idOrLink, ExitStatus &status)
{
    if (isId(idOrLink)) {
        Error::Type error = Error::Success;
        std::unique_ptr<Place> place(PlaceManager().getPlace(idOrLink.toLongLong(), &error));
        if (!place)
            status = report(error, nameOfPlace(idOrLink.toLongLong()));
        return place;
    }
    auto place = std::make_unique<Place>();
    const QString problem = readLink(idOrLink, *place);
    if (problem.isEmpty())
        return place;
    complain(idOrLink, problem);
    status = WrongUse;
    return nullptr;
}

ExitStatus showPlaces(const QStringList &idsOrLinks, Form form)
{
    ExitStatus status = Done;
    std::vector<std::unique_ptr<Place>> found;
    for (const QString &idOrLink : idsOrLinks) {
        if (std::unique_ptr<Place> place = placeOf(idOrLink, status))
            found.push_back(std::move(place));
    }
    if (form == Form::Json) {
        printFeatures(found, idsOrLinks.size() > 1);
        return status;
    }
    for (const auto &place : found) {
        if (form == Form::Table && place != found.front())
            printLine({});
        printPlace(*place, form);
    }
    return status;
}

ExitStatus show(const ShowOptions &options, const QStringList &places, Form form)
{
    if (!options.records)
        return showPlaces(places, options.asDocument ? Form::Document : form);
    if (places.size() > 1)
        return misuse("show", QStringLiteral("--aux takes one place only"));
    if (!isId(places.first())) {
        complain(places.first(), QStringLiteral("records can only be fetched for a stored place; give its number"));
        return WrongUse;
    }
    return showRecords(places.first().toLongLong(), text(options.type), options.onlyRemote, form);
}

void addShowCommand(CLI::App &app, Context &context)
{
    const auto options = std::make_shared<ShowOptions>();
    CLI::App *command = app.add_subcommand("show", "Show all data of places, positions, or the places of links");
    command->add_option("PLACE", options->places, "Numbers of places, positions, geo: URIs or map links")
        ->required()
        ->transform(IsIdOrPosition);
    CLI::Option *document = command->add_flag("--document", options->asDocument, "Write the places' JSON documents");
    CLI::Option *aux =
        command->add_flag("--aux", options->records, "Fetch the place's auxiliary records instead")->excludes(document);
    command->add_option("--type", options->type, "Only records of this type, such as contact or poi")->needs(aux);
    command->add_flag("--remote", options->onlyRemote, "Only records from providers")->needs(aux);
    command->callback([&context, options] {
        const QStringList places = texts(options->places);
        context.needsService = std::any_of(places.begin(), places.end(), isId);
        context.run = [&context, options, places] { return show(*options, places, context.form); };
    });
}

ExitStatus printLink(const Place &place, Form form)
{
    const QUrl url = place.mapUrl();
    if (url.isEmpty()) {
        complain(nameOfPlace(place.id()),
                 QStringLiteral("has no position to link to; give it one with places update --at"));
        return Failed;
    }
    const QString link = QString::fromLatin1(url.toEncoded());
    if (form == Form::Table) {
        printLine(link);
        return Done;
    }
    JsonWriter out;
    out.object([&] { out.member("url", link); });
    printJson(out.result());
    return Done;
}

/// Adds a command that calls `work` with the id of a place.
template <typename Work>
CLI::App *addPlaceCommand(CLI::App &app, Context &context, const char *name, const char *description, Work work)
{
    const auto id = std::make_shared<qint64>(-1);
    CLI::App *command = app.add_subcommand(name, description);
    command->add_option("ID", *id, "Number of the place")->required()->transform(IsId);
    command->callback([&context, id, work] { context.run = [id, work] { return work(*id); }; });
    return command;
}

} // namespace

void addChangeCommands(CLI::App &app, Context &context)
{
    const auto details = std::make_shared<Details>();
    CLI::App *addCommand = app.add_subcommand("add", "Add a place and print its number");
    const auto nameOrLink = std::make_shared<std::string>();
    addCommand->add_option("PLACE", *nameOrLink, "Name, position, geo: URI or map link")->required()->transform(IsName);
    addCommand->add_option("--name", details->name, "Name, when PLACE is a position or link")->transform(IsName);
    addDetailOptions(*addCommand, *details);
    addCommand->callback([&context, nameOrLink, details] {
        context.run = [&context, nameOrLink, details] { return add(text(*nameOrLink), *details, context.form); };
    });

    addShowCommand(app, context);
    CLI::App *updateCommand = addPlaceCommand(app, context, "update", "Change the given values of a place",
                                              [&context, details](qint64 id) { return update(id, *details, context); });
    updateCommand->add_option("--name", details->name, "Name")->transform(IsName);
    addDetailOptions(*updateCommand, *details);
    addPlaceCommand(app, context, "link", "Print the link that shows a place on the map web service",
                    [&context](qint64 id) {
                        return withPlace(id, [&](const Place &place) { return printLink(place, context.form); });
                    });
}

} // namespace tool
