// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "Commands.h"

#include "Export.h"
#include "Formats.h"
#include "Import.h"
#include "PlaceLink.h"

#include <places/Place.h>
#include <places/PlaceHeader.h>
#include <places/PlaceManager.h>
#include <places/PointOfInterestAuxiliaryData.h>
#include <places/SearchHandle.h>

#include <QtCore/QStringList>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tool
{

using namespace places;

namespace
{

constexpr int DEFAULT_LIMIT = 20;

QString text(const std::string &bytes)
{
    return QString::fromLocal8Bit(bytes.data(), static_cast<int>(bytes.size()));
}

QStringList texts(const std::vector<std::string> &list)
{
    QStringList converted;
    for (const std::string &bytes : list)
        converted.append(text(bytes));
    return converted;
}

QString nameOf(qint64 id)
{
    return QStringLiteral("place %1").arg(id);
}

/// Owns the places of a find.
struct Found
{
    Found() = default;
    Found(const Found &) = delete;
    Found &operator=(const Found &) = delete;
    ~Found() { qDeleteAll(places); }

    QList<PlaceHeader *> places;
};

/// The coordinates in a text "LATITUDE,LONGITUDE", in degrees; invalid when it is none.
Coordinates parsePosition(const std::string &position)
{
    const QStringList parts = text(position).split(QLatin1Char(','));
    bool isLatitude = false;
    bool isLongitude = false;
    if (parts.size() != 2)
        return {};
    const Coordinates coordinates(parts[0].trimmed().toDouble(&isLatitude), parts[1].trimmed().toDouble(&isLongitude));
    return isLatitude && isLongitude ? coordinates : Coordinates();
}

/// Refuses, as wrong use, what is not a position.
const CLI::Validator IsPosition(
    [](const std::string &position) {
        return parsePosition(position).isValid() ? std::string() : "not a position: " + position;
    },
    "LATITUDE,LONGITUDE");

// ------------------------------------------------------------------------------------------------ adding, changing

/// What the user says of a place; what is not said stays as it is.
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
    command.add_option("--at", details.position, "Position in degrees")->check(IsPosition);
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
    command.add_option("--tag", details.tags, "Tag; may be given several times");
}

template <typename Object>
void set(Object &object, void (Object::*setter)(const QString &), const std::optional<std::string> &value)
{
    if (value)
        (object.*setter)(text(*value));
}

/// The first location with the changes; nothing when it would say nothing.
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
    int index = 0;
    while (index < place.auxiliaryDataCount()
           && place.auxiliaryData(index).type() != AuxiliaryData::TypePointOfInterest)
        ++index;
    if (index == place.auxiliaryDataCount())
        place.addAuxiliaryData(PointOfInterestAuxiliaryData());
    PointOfInterestAuxiliaryData poi(place.auxiliaryData(index));
    set(poi, &PointOfInterestAuxiliaryData::setPhoneNumber, details.phone);
    set(poi, &PointOfInterestAuxiliaryData::setEmailAddress, details.email);
    if (details.url)
        poi.setUrl(QUrl(text(*details.url)));
    place.replaceAuxiliaryData(index, poi);
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

/// Adds a place by its name, or the place that a link leads to.
ExitStatus add(const QString &nameOrLink, const Details &details, Form form)
{
    Place place;
    place.setSource(AbstractPlace::SourceManualInput);
    if (!isLink(nameOrLink)) {
        place.setName(nameOrLink);
    } else if (const QString problem = readLink(nameOrLink, place); !problem.isEmpty()) {
        complain(nameOrLink, problem);
        return WrongUse;
    }
    apply(place, details);
    if (!place.isValid()) {
        complain(QStringLiteral("add"), QStringLiteral("a place needs a position (--at) or an address (--city ...)"));
        return WrongUse;
    }
    const ExitStatus status = report(PlaceManager().addPlace(&place), place.name());
    if (status == Done && form == Form::Json)
        printPlace(place, form);
    else if (status == Done)
        printLine(QString::number(place.id()));
    return status;
}

/// Fetches a place and does something with it.
template <typename Work>
ExitStatus withPlace(qint64 id, Work work)
{
    Error::Type error = Error::Success;
    const std::unique_ptr<Place> place(PlaceManager().getPlace(id, &error));
    return place ? work(*place) : report(error, nameOf(id));
}

/// Does something with each of several places and goes on after a failure; the last failure is the outcome.
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

/// Shows what a link leads to; it is not stored.
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

ExitStatus show(const QString &idOrLink, Form form)
{
    if (isLink(idOrLink))
        return showLink(idOrLink, form);
    return withPlace(idOrLink.toLongLong(), [form](const Place &place) {
        printPlace(place, form);
        return Done;
    });
}

/// Refuses, as wrong use, what is neither the number of a place nor a link.
const CLI::Validator IsIdOrLink(
    [](const std::string &argument) {
        bool isNumber = false;
        (void)text(argument).toLongLong(&isNumber);
        return isNumber || isLink(text(argument)) ? std::string() : "neither a number nor a link: " + argument;
    },
    "ID|LINK");

void addShowCommand(CLI::App &app, Context &context)
{
    const auto idOrLink = std::make_shared<std::string>();
    const auto asDocument = std::make_shared<bool>(false);
    CLI::App *command = app.add_subcommand("show", "Show a place with all it has, or what a link leads to");
    command->add_option("PLACE", *idOrLink, "Number of the place, geo: URI or map link")->required()->check(IsIdOrLink);
    command->add_flag("--document", *asDocument, "Write the place's JSON document");
    command->callback([&context, idOrLink, asDocument] {
        context.needsService = !isLink(text(*idOrLink));
        context.run = [&context, idOrLink, asDocument] {
            return show(text(*idOrLink), *asDocument ? Form::Document : context.form);
        };
    });
}

ExitStatus unfav(Place &place)
{
    if (place.isFavorite())
        return report(PlaceManager().unfav(&place), nameOf(place.id()));
    complain(nameOf(place.id()), QStringLiteral("is no favourite"));
    return Failed;
}

ExitStatus printLink(const Place &place)
{
    const QUrl url = place.mapUrl();
    if (url.isEmpty()) {
        complain(nameOf(place.id()), QStringLiteral("has no position"));
        return Failed;
    }
    printLine(QString::fromLatin1(url.toEncoded()));
    return Done;
}

/// Adds a command that does `work` with one place, fetched in full.
template <typename Work>
CLI::App *addPlaceCommand(CLI::App &app, Context &context, const char *name, const char *description, Work work)
{
    const auto id = std::make_shared<qint64>(-1);
    CLI::App *command = app.add_subcommand(name, description);
    command->add_option("ID", *id, "Number of the place")->required();
    command->callback([&context, id, work] { context.run = [id, work] { return withPlace(*id, work); }; });
    return command;
}

/// Adds a command that does `work` with each of several places, by their ids.
template <typename Work>
void addIdsCommand(CLI::App &app, Context &context, const char *name, const char *description, Work work)
{
    const auto ids = std::make_shared<std::vector<qint64>>();
    CLI::App *command = app.add_subcommand(name, description);
    command->add_option("ID", *ids, "Numbers of the places")->required();
    command->callback([&context, ids, work] { context.run = [ids, work] { return withEach(*ids, work); }; });
}

using ChangeTag = Error::Type (PlaceManager::*)(qint64, const QString &) const;

void addTagCommand(CLI::App &app, Context &context, const char *name, const char *description, ChangeTag change)
{
    const auto id = std::make_shared<qint64>(-1);
    const auto tags = std::make_shared<std::vector<std::string>>();
    CLI::App *command = app.add_subcommand(name, description);
    command->add_option("ID", *id, "Number of the place")->required();
    command->add_option("TAG", *tags, "Tags")->required();
    command->callback([&context, id, tags, change] {
        context.run = [id, tags, change] {
            ExitStatus status = Done;
            for (const std::string &tag : *tags) {
                const Error::Type error = (PlaceManager().*change)(*id, text(tag));
                if (const ExitStatus outcome = report(error, nameOf(*id)); outcome != Done)
                    status = outcome;
            }
            return status;
        };
    });
}

void addChangingCommands(CLI::App &app, Context &context)
{
    const auto details = std::make_shared<Details>();
    CLI::App *addCommand = app.add_subcommand("add", "Add a place and print its number");
    const auto nameOrLink = std::make_shared<std::string>();
    addCommand->add_option("PLACE", *nameOrLink, "Name, geo: URI or map link")->required();
    addCommand->add_option("--name", details->name, "Name of a place that is given by a link");
    addDetailOptions(*addCommand, *details);
    addCommand->callback([&context, nameOrLink, details] {
        context.run = [&context, nameOrLink, details] { return add(text(*nameOrLink), *details, context.form); };
    });

    addShowCommand(app, context);
    CLI::App *updateCommand = addPlaceCommand(app, context, "update", "Change a place; what is not given stays",
                                              [details](Place &place) { return update(place, *details); });
    updateCommand->add_option("--name", details->name, "Name");
    addDetailOptions(*updateCommand, *details);
    addIdsCommand(app, context, "remove", "Remove places", [](qint64 id) { return PlaceManager().removePlace(id); });
    addIdsCommand(app, context, "use", "Count a use of places, now",
                  [](qint64 id) { return PlaceManager().usePlace(id); });
    addPlaceCommand(app, context, "fav", "Make a place a favourite",
                    [](Place &place) { return report(PlaceManager().fav(&place), nameOf(place.id())); });
    addPlaceCommand(app, context, "unfav", "Make a favourite an ordinary place", unfav);
    addTagCommand(app, context, "tag", "Add tags to a place", &PlaceManager::addTag);
    addTagCommand(app, context, "untag", "Remove tags from a place", &PlaceManager::removeTag);
    addPlaceCommand(app, context, "link", "Print the link that shows a place on the map web service", printLink);
}

// --------------------------------------------------------------------------------------------------------- finding

struct FindOptions
{
    std::vector<std::string> terms;
    std::string position;
    std::vector<std::string> tags;
    std::string sort = "relevance";
    int offset = 0;
    int limit = DEFAULT_LIMIT;
    bool onlyMine = false;
};

SortRule sortRuleOf(const FindOptions &options)
{
    if (!options.position.empty())
        return SortRule::createDistanceSortRule(parsePosition(options.position), SortOrder::Ascending);
    if (options.sort == "name")
        return SortRule::createSimpleSortRule(SortField::Name, SortOrder::Ascending);
    if (options.sort == "recent")
        return SortRule::createSimpleSortRule(SortField::LastUsedTime, SortOrder::Descending);
    if (options.sort == "new")
        return SortRule::createSimpleSortRule(SortField::CreationTime, SortOrder::Descending);
    return {};
}

void addPageOptions(CLI::App &command, FindOptions &options)
{
    command.add_option("--offset", options.offset, "Number of results to pass over")->check(CLI::NonNegativeNumber);
    command.add_option("--limit", options.limit, "Largest number of results")
        ->check(CLI::NonNegativeNumber)
        ->capture_default_str();
}

/// Runs a find and prints what it found; says when there is more.
template <typename Find>
ExitStatus printFound(const QString &what, Form form, Find find)
{
    Error::Type error = Error::Success;
    SearchHandle handle;
    Found found;
    found.places = find(&error, &handle);
    const ExitStatus status = report(error, what);
    if (status != Done)
        return status;
    printPlaces(found.places, form);
    if (form == Form::Table && handle.hasMoreData())
        std::fprintf(stderr, "places: there are more; see --limit and --offset\n");
    return Done;
}

ExitStatus findPlaces(const FindOptions &options, Form form)
{
    const PlaceManager manager;
    const SortRule sort = sortRuleOf(options);
    if (options.tags.empty()) {
        return printFound(QStringLiteral("find"), form, [&](Error::Type *error, SearchHandle *handle) {
            return manager.findPlaces(texts(options.terms).join(QLatin1Char(' ')), error, handle, sort, options.offset,
                                      options.limit);
        });
    }
    const QStringList tags = texts(options.tags);
    return printFound(QStringLiteral("find"), form, [&](Error::Type *error, SearchHandle *handle) {
        return manager.findPlacesByTags(tags, error, handle, sort, options.offset, options.limit);
    });
}

void addFindingCommands(CLI::App &app, Context &context)
{
    const auto options = std::make_shared<FindOptions>();
    const auto runFind = [&context, options] {
        context.run = [&context, options] { return findPlaces(*options, context.form); };
    };

    CLI::App *find = app.add_subcommand("find", "Find places by the beginnings of words in their names");
    CLI::Option *term = find->add_option("TERM", options->terms, "Words to look for; none for every place");
    find->add_option("--tag", options->tags, "Places with any of these tags instead")->excludes(term);
    find->add_option("--near", options->position, "Nearest to this position first")->check(IsPosition);
    find->add_option("--sort", options->sort, "What comes first")
        ->check(CLI::IsMember({"relevance", "name", "recent", "new"}))
        ->capture_default_str();
    addPageOptions(*find, *options);
    find->callback(runFind);

    CLI::App *near = app.add_subcommand("near", "List the places nearest to a position");
    near->add_option("POSITION", options->position, "Position in degrees")->required()->check(IsPosition);
    near->add_option("TERM", options->terms, "Words to look for in the names");
    addPageOptions(*near, *options);
    near->callback(runFind);

    CLI::App *recent = app.add_subcommand("recent", "List places by their last use, latest first");
    recent->add_flag("--mine", options->onlyMine, "Only places that this application added");
    addPageOptions(*recent, *options);
    recent->callback([&context, options] {
        context.run = [&context, options] {
            return printFound(QStringLiteral("recent"), context.form, [&](Error::Type *error, SearchHandle *handle) {
                return PlaceManager().findRecentPlaces(error, handle, options->onlyMine, 0, options->offset,
                                                       options->limit);
            });
        };
    });

    CLI::App *tags = app.add_subcommand("tags", "List the tags in use");
    tags->callback([&context] {
        context.run = [&context] {
            Error::Type error = Error::Success;
            const QStringList found = PlaceManager().getTagsInUse(&error);
            if (error == Error::Success)
                printTexts(found, context.form);
            return report(error, QStringLiteral("tags"));
        };
    });
}

// -------------------------------------------------------------------------------------------------------- exchange

/// Adds the option that names a format.
void addFormatOption(CLI::App &command, std::string &format, bool onlyWritable)
{
    std::vector<std::string> names;
    for (const QString &name : formatNames(onlyWritable))
        names.push_back(name.toStdString());
    command.add_option("--format", format, "Format; without it the file's extension or content tells")
        ->check(CLI::IsMember(names));
}

void addExchangeCommands(CLI::App &app, Context &context)
{
    const auto format = std::make_shared<std::string>();
    const auto files = std::make_shared<std::vector<std::string>>();
    CLI::App *import = app.add_subcommand("import", "Add the places of GeoJSON, JSON, GPX, KML and CSV files");
    import->add_option("FILE", *files, "Files; - for standard input")->required();
    addFormatOption(*import, *format, false);
    import->callback([&context, files, format] {
        context.run = [files, format] { return importFiles(texts(*files), text(*format));
};
} // namespace
);

const auto file = std::make_shared<std::string>("-");
CLI::App *exporting = app.add_subcommand("export", "Write all stored places as GeoJSON or JSON documents");
exporting->add_option("FILE", *file, "File; - for standard output")->capture_default_str();
addFormatOption(*exporting, *format, true);
exporting->callback([&context, file, format] {
    context.run = [file, format] { return exportPlaces(text(*file), text(*format)); };
});
} // namespace tool

} // namespace

void addCommands(CLI::App &app, Context &context)
{
    addChangingCommands(app, context);
    addFindingCommands(app, context);
    addExchangeCommands(app, context);
}

} // namespace tool
