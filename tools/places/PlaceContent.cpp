// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "PlaceContent.h"

#include "formats/Vocabulary.h"

#include <places/Place.h>

#include <QtCore/QMap>
#include <QtCore/QSet>

#include <utility>

namespace tool
{

using namespace places;
namespace vocabulary = formats::vocabulary;

namespace
{

void overlay(QString &text, const QString &other)
{
    if (!other.isEmpty())
        text = other;
}

/// Appends the missing elements of `other`.
void unite(QStringList &list, const QStringList &other)
{
    const QSet<QString> present(list.begin(), list.end());
    for (const QString &element : other) {
        if (!present.contains(element))
            list.append(element);
    }
}

Address overlaid(Address address, const Address &other)
{
    for (const auto &part : vocabulary::ADDRESS_TEXTS) {
        if (const QString text = (other.*part.get)(); !text.isEmpty())
            (address.*part.set)(text);
    }
    for (const auto &part : vocabulary::ADDRESS_LINES) {
        if (const QStringList lines = (other.*part.get)(); !lines.isEmpty())
            (address.*part.set)(lines);
    }
    if (other.hasValidFloor())
        address.setFloor(other.floor());
    return address;
}

Location overlaid(Location location, const Location &other)
{
    location.setAddress(overlaid(location.address(), other.address()));
    if (other.coordinates().isValid())
        location.setCoordinates(other.coordinates());
    if (other.boundingBox().isValid())
        location.setBoundingBox(other.boundingBox());
    if (!other.virtualData().isEmpty()) {
        location.setVirtualData(other.virtualData());
        location.setVirtualDataType(other.virtualDataType());
    }
    return location;
}

AuxiliaryData overlaid(AuxiliaryData data, const AuxiliaryData &other)
{
    if (!other.externalId().isEmpty())
        data.setExternalId(other.externalId());
    const QMap<QString, QString> properties = other.properties();
    for (auto property = properties.begin(); property != properties.end(); ++property)
        data.addProperty(property.key(), property.value());
    return data;
}

/// Index of the first record of a type, starting at `from`; the number of records when there is none.
int indexOfType(const QList<AuxiliaryData> &records, const QString &type, int from)
{
    int index = from;
    while (index < records.size() && records[index].type() != type)
        ++index;
    return index;
}

/// Matches the records of each type in order: the first with the first, and so on.
void overlay(QList<AuxiliaryData> &records, const QList<AuxiliaryData> &other)
{
    QMap<QString, int> next;
    for (const AuxiliaryData &data : other) {
        const int index = indexOfType(records, data.type(), next.value(data.type()));
        if (index == records.size())
            records.append(data);
        else
            records[index] = overlaid(records[index], data);
        next[data.type()] = index + 1;
    }
}

void overlay(QList<Location> &locations, const QList<Location> &other)
{
    for (int i = 0; i < other.size(); ++i) {
        if (i < locations.size())
            locations[i] = overlaid(locations[i], other[i]);
        else
            locations.append(other[i]);
    }
}

void replaceTags(Place &place, const QStringList &tags)
{
    while (place.tagCount() > 0)
        place.removeTag(place.tag(0));
    for (const QString &tag : tags)
        place.addTag(tag);
}

/// Adding some tags adds an alias, so aliases are set after tags.
void replaceAliases(Place &place, const QStringList &aliases)
{
    const QStringList oldAliases = place.aliases();
    for (const QString &alias : oldAliases)
        place.removeAlias(alias);
    for (const QString &alias : aliases)
        place.addAlias(alias);
}

} // namespace

PlaceContent PlaceContent::of(const Place &place)
{
    PlaceContent content;
    content.name = place.name();
    content.description = place.description();
    content.source = place.source();
    content.isPrivate = place.isPrivate();
    content.expiryTime = place.expiryTime();
    for (int i = 0; i < place.tagCount(); ++i)
        content.tags.append(place.tag(i));
    content.aliases = place.aliases();
    for (int i = 0; i < place.locationCount(); ++i)
        content.locations.append(place.location(i));
    for (int i = 0; i < place.auxiliaryDataCount(); ++i)
        content.records.append(place.auxiliaryData(i));
    return content;
}

void PlaceContent::applyTo(Place &place) const
{
    const PlaceContent before = of(place);
    place.setName(name);
    place.setDescription(description);
    place.setSource(source);
    place.setPrivate(isPrivate);
    place.setExpiredTime(expiryTime);
    replaceTags(place, tags);
    replaceAliases(place, aliases);
    while (place.locationCount() > 0)
        place.removeLocation(0);
    for (const Location &location : locations)
        place.addLocation(location);
    while (place.auxiliaryDataCount() > 0)
        place.removeAuxiliaryData(0);
    for (const AuxiliaryData &data : records) {
        const int known = before.records.indexOf(data);
        place.addAuxiliaryData(known < 0 ? data : before.records[known]);
    }
}

PlaceContent PlaceContent::with(const PlaceContent &other) const
{
    PlaceContent content = *this;
    overlay(content.name, other.name);
    overlay(content.description, other.description);
    overlay(content.source, other.source);
    content.isPrivate = isPrivate || other.isPrivate;
    if (other.expiryTime > 0)
        content.expiryTime = other.expiryTime;
    unite(content.tags, other.tags);
    unite(content.aliases, other.aliases);
    overlay(content.locations, other.locations);
    overlay(content.records, other.records);
    return content;
}

bool PlaceContent::operator==(const PlaceContent &other) const
{
    return name == other.name && description == other.description && source == other.source
           && isPrivate == other.isPrivate && expiryTime == other.expiryTime && tags == other.tags
           && aliases == other.aliases && locations == other.locations && records == other.records;
}

} // namespace tool
