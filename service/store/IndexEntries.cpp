// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "store/IndexEntries.h"

#include "Limits.h"
#include "model/PlacePrivate.h"
#include "places/AuxiliaryData.h"
#include "places/PointOfInterestAuxiliaryData.h"
#include "places/Tags.h"
#include "text/OtherNames.h"

#include <QtCore/QSet>

#include <algorithm>

namespace placesd
{

using namespace vela::platform::places;

namespace
{

constexpr int PREFIX_LENGTH = 64; // code points
/// Maximum number of UTF-16 units of a text, and of all texts of a place, in the word index.
constexpr int SEARCHED_LENGTH = limits::TEXT_LENGTH;
constexpr int SEARCHED_IN_ALL = 16 * limits::TEXT_LENGTH;

/// Equal to propertyPrefix() of the key of the whole text, but reads only as much of the text as needed.
QString keyPrefix(const QString &text)
{
    // Following characters may compose with the last letters of a part, so read more than the prefix.
    constexpr int ROOM = 2 * PREFIX_LENGTH;
    int length = ROOM;
    QString key = searchKey(text.left(length));
    while (key.size() < ROOM && length < text.size()) {
        length *= 4;
        key = searchKey(text.left(length));
    }
    return propertyPrefix(key);
}

bool canBeRoom(const AuxiliaryData &record)
{
    return record.type() == AuxiliaryData::TypeContact || record.type() == AuxiliaryData::TypeCalendar;
}

void addRecord(IndexEntries &entries, const AuxiliaryData &record, QSet<QString> &types, QSet<QString> &keys)
{
    types.insert(record.type());
    if (!record.externalId().isEmpty())
        entries.origins.push_back({record.externalId(), record.type(), keyOf(record.provider())});
    const QMap<QString, QString> properties = record.properties();
    for (auto property = properties.begin(); property != properties.end(); ++property) {
        const QString key = searchKey(property.key());
        const QString value = keyPrefix(property.value());
        keys.insert(key);
        entries.properties.push_back({key, value});
        entries.isRoom =
            entries.isRoom || (canBeRoom(record) && key == QLatin1String("kind") && value == QLatin1String(ROOM));
    }
}

QStringList textsOf(const Address &address)
{
    return {address.houseNumber(), address.street(), address.building(), address.campus(),
            address.city(),        address.region(), address.country(),  address.isoAlpha2CountryCode(),
            address.postalCode()};
}

} // namespace

QString textKeyOf(const PlacePrivate &place)
{
    QStringList texts{place.name(), place.description()};
    texts += place.aliases();
    for (const QString &tag : place.tags()) {
        if (tag != Tags::Favorite)
            texts.append(tag);
    }
    for (const Location &location : place.locations())
        texts += textsOf(location.address());
    for (const AuxiliaryData &record : place.auxiliaryData()) {
        texts += otherNames(record);
        if (record.type() == AuxiliaryData::TypePointOfInterest)
            texts.append(PointOfInterestAuxiliaryData(record).category());
    }
    texts.removeDuplicates();
    QString::size_type left = SEARCHED_IN_ALL;
    for (QString &text : texts) {
        text.truncate(std::min<QString::size_type>(SEARCHED_LENGTH, left));
        left -= text.size();
    }
    return indexKey(texts);
}

/// Cut at code points: two texts compare like their prefixes, unless these are equal.
QString propertyPrefix(const QString &value)
{
    int end = 0;
    for (int i = 0; i < PREFIX_LENGTH && end < value.size(); ++i)
        end += value.at(end).isHighSurrogate() ? 2 : 1;
    return value.left(end);
}

QString keyOf(const Provider &provider)
{
    return provider.isValid() ? provider.name() + QLatin1Char(' ') + provider.url().toString() : QString();
}

QString originKey(const QString &type, const QString &provider, const QString &externalId)
{
    return type + QLatin1Char('\n') + provider + QLatin1Char('\n') + externalId;
}

QString originKey(const AuxiliaryData &record)
{
    return record.externalId().isEmpty() ? QString()
                                         : originKey(record.type(), keyOf(record.provider()), record.externalId());
}

IndexEntries IndexEntries::of(const PlacePrivate &place)
{
    IndexEntries entries;
    QSet<QString> types;
    QSet<QString> keys;
    QSet<QString> tags;
    for (const AuxiliaryData &record : place.auxiliaryData())
        addRecord(entries, record, types, keys);
    for (const QString &tag : place.tags())
        tags.insert(tag);

    const auto addAll = [&entries](FacetKind kind, const QSet<QString> &texts) {
        for (const QString &text : texts)
            entries.facets.push_back({kind, text});
    };
    addAll(FacetKind::Owner, {place.owner()});
    addAll(FacetKind::Persistence, {QString::number(place.persistenceMask())});
    addAll(FacetKind::Tag, tags);
    addAll(FacetKind::Type, types);
    addAll(FacetKind::PropertyKey, keys);
    if (entries.isRoom)
        addAll(FacetKind::Quality, {QLatin1String(ROOM)});
    if (place.isPrivate())
        addAll(FacetKind::Quality, {QLatin1String(PRIVATE)});
    entries.textKey = textKeyOf(place);
    return entries;
}

} // namespace placesd
