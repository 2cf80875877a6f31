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

QString nameOf(qint64 id)
{
    return QStringLiteral("place %1").arg(id);
}

/// The values of a place given as options; a value that is not given stays unchanged.
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

/// The first location with the changes; std::nullopt when no value would be left in it.
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

/// True for a text that is a whole place: a link, or a position when no option gives one.
bool isWhole(const QString &text, const Details &details)
{
    if (isLink(text))
        return true;
    const formats::ReadPosition read = readAnyPosition(text);
    return (read.position.isValid() || !read.problem.isEmpty()) && !changedLocation(Place(), details);
}

/// Adds a place by its name, or the place at a position or of a link.
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
    return place ? work(*place) : report(error, nameOf(id));
}

/// Calls `work` for each of several places and continues after a failure; returns the last failure.
template <typename Work>
ExitStatus withEach(const std::vector<qint64> &ids, Work work)
{
    ExitStatus status = Done;
    for (const qint64 id : ids) {
        if (const ExitStatus outcome = report(work(id), nameOf(id)); outcome != Done)
            status = outcome;
    }
    return status;
}

ExitStatus update(Place &place, const Details &details)
{
    apply(place, details);
    return report(PlaceManager().updatePlace(&place), nameOf(place.id()));
}

/// Shows a position or the place of a link without storing it.
ExitStatus showLink(const QString &link, Form form)
{
    Place place;
    if (const QString problem = readLink(link, place); !problem.isEmpty()) {
        complain(link, problem);
        return WrongUse;
    }
    printPlace(place, form);
    return Done;
}

/// True for the number of a stored place.
bool isId(const QString &text)
{
    bool isNumber = false;
    (void)text.toLongLong(&isNumber);
    return isNumber;
}

ExitStatus show(const QString &idOrLink, Form form)
{
    if (!isId(idOrLink))
        return showLink(idOrLink, form);
    return withPlace(idOrLink.toLongLong(), [form](const Place &place) {
        printPlace(place, form);
        return Done;
    });
}

void addShowCommand(CLI::App &app, Context &context)
{
    struct Options
    {
        std::string place;
        bool asDocument = false;
        bool records = false;
        std::string type;
        bool onlyRemote = false;
    };
    const auto options = std::make_shared<Options>();
    CLI::App *command = app.add_subcommand("show", "Show all data of a place, a position, or the place of a link");
    command->add_option("PLACE", options->place, "Number of the place, position, geo: URI or map link")
        ->required()
        ->transform(IsIdOrPosition);
    CLI::Option *document = command->add_flag("--document", options->asDocument, "Write the place's JSON document");
    CLI::Option *aux =
        command->add_flag("--aux", options->records, "Fetch the place's auxiliary records instead")->excludes(document);
    command->add_option("--type", options->type, "Only records of this type, such as contact or poi")->needs(aux);
    command->add_flag("--remote", options->onlyRemote, "Only records that are fetched from a provider")->needs(aux);
    command->callback([&context, options] {
        const QString place = text(options->place);
        context.needsService = isId(place);
        context.run = [&context, options, place] {
            if (options->records && !isId(place)) {
                complain(place, QStringLiteral("records can only be fetched for a stored place; give its number"));
                return WrongUse;
            }
            if (options->records)
                return showRecords(place.toLongLong(), text(options->type), options->onlyRemote, context.form);
            return show(place, options->asDocument ? Form::Document : context.form);
        };
    });
}

ExitStatus unfav(Place &place)
{
    if (place.isFavorite())
        return report(PlaceManager().unfav(&place), nameOf(place.id()));
    complain(nameOf(place.id()), QStringLiteral("is not a favourite; make it one with places fav"));
    return Failed;
}

ExitStatus printLink(const Place &place, Form form)
{
    const QUrl url = place.mapUrl();
    if (url.isEmpty()) {
        complain(nameOf(place.id()), QStringLiteral("has no position to link to; give it one with places update --at"));
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

/// Adds a command that calls `work` with one place, fetched in full.
template <typename Work>
CLI::App *addPlaceCommand(CLI::App &app, Context &context, const char *name, const char *description, Work work)
{
    const auto id = std::make_shared<qint64>(-1);
    CLI::App *command = app.add_subcommand(name, description);
    command->add_option("ID", *id, "Number of the place")->required()->transform(IsId);
    command->callback([&context, id, work] { context.run = [id, work] { return withPlace(*id, work); }; });
    return command;
}

/// Adds a command that calls `work` with the id of each of several places.
template <typename Work>
void addIdsCommand(CLI::App &app, Context &context, const char *name, const char *description, Work work)
{
    const auto ids = std::make_shared<std::vector<qint64>>();
    CLI::App *command = app.add_subcommand(name, description);
    command->add_option("ID", *ids, "Numbers of the places")->required()->transform(IsId);
    command->callback([&context, ids, work] { context.run = [ids, work] { return withEach(*ids, work); }; });
}

using ChangeTag = Error::Type (PlaceManager::*)(qint64, const QString &) const;

void addTagCommand(CLI::App &app, Context &context, const char *name, const char *description, ChangeTag change)
{
    const auto id = std::make_shared<qint64>(-1);
    const auto tags = std::make_shared<std::vector<std::string>>();
    CLI::App *command = app.add_subcommand(name, description);
    command->add_option("ID", *id, "Number of the place")->required()->transform(IsId);
    command->add_option("TAG", *tags, "Tags")->required();
    command->callback([&context, id, tags, change] {
        context.run = [id, tags, change] {
            ExitStatus status = Done;
            for (const std::string &tag : *tags) {
                const Error::Type error = (PlaceManager().*change)(*id, text(tag));
                if (const ExitStatus outcome = report(error, nameOf(*id) + QStringLiteral(", tag ") + text(tag));
                    outcome != Done)
                    status = outcome;
            }
            return status;
        };
    });
}

} // namespace

void addChangeCommands(CLI::App &app, Context &context)
{
    const auto details = std::make_shared<Details>();
    CLI::App *addCommand = app.add_subcommand("add", "Add a place and print its number");
    const auto nameOrLink = std::make_shared<std::string>();
    addCommand->add_option("PLACE", *nameOrLink, "Name, position, geo: URI or map link")->required()->transform(IsName);
    addCommand->add_option("--name", details->name, "Name of a place that is given by a position or link")
        ->transform(IsName);
    addDetailOptions(*addCommand, *details);
    addCommand->callback([&context, nameOrLink, details] {
        context.run = [&context, nameOrLink, details] { return add(text(*nameOrLink), *details, context.form); };
    });

    addShowCommand(app, context);
    CLI::App *updateCommand = addPlaceCommand(app, context, "update", "Change the given values of a place",
                                              [details](Place &place) { return update(place, *details); });
    updateCommand->add_option("--name", details->name, "Name")->transform(IsName);
    addDetailOptions(*updateCommand, *details);
    addIdsCommand(app, context, "remove", "Remove places", [](qint64 id) { return PlaceManager().removePlace(id); });
    addIdsCommand(app, context, "use", "Count a use of places, now",
                  [](qint64 id) { return PlaceManager().usePlace(id); });
    addPlaceCommand(app, context, "fav", "Make a place a favourite",
                    [](Place &place) { return report(PlaceManager().fav(&place), nameOf(place.id())); });
    addPlaceCommand(app, context, "unfav", "Make a favourite an ordinary place", unfav);
    addTagCommand(app, context, "tag", "Add tags to a place", &PlaceManager::addTag);
    addTagCommand(app, context, "untag", "Remove tags from a place", &PlaceManager::removeTag);
    addPlaceCommand(app, context, "link", "Print the link that shows a place on the map web service",
                    [&context](const Place &place) { return printLink(place, context.form); });
}

} // namespace tool
