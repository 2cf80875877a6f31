// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "DocumentReader.h"

#include "Feature.h"
#include "LineReader.h"

#include <places/PlaceJson.h>

#include <rapidjson/error/en.h>
#include <rapidjson/reader.h>

#include <cmath>

namespace formats
{

using namespace vela::platform::places;

namespace
{

/// Parses a document; stops at a list or object with more than MAX_LIST_LENGTH members.
struct ListLengths : rapidjson::BaseReaderHandler<rapidjson::UTF8<>, ListLengths>
{
    bool EndArray(rapidjson::SizeType count) { return count <= MAX_LIST_LENGTH; }
    bool EndObject(rapidjson::SizeType count) { return count <= MAX_LIST_LENGTH; }
};

rapidjson::ParseResult checkLists(const QByteArray &document)
{
    constexpr unsigned FLAGS = rapidjson::kParseIterativeFlag | rapidjson::kParseNumbersAsStringsFlag;
    rapidjson::StringStream text(document.constData());
    ListLengths lengths;
    return rapidjson::Reader().Parse<FLAGS>(text, lengths);
}

/// True for coordinates that are set but not on the Earth.
bool isOffEarth(const Coordinates &position)
{
    return !position.isValid() && !(std::isnan(position.latitude()) && std::isnan(position.longitude()));
}

Location newLocation(const Location &from)
{
    Location location;
    location.setAddress(from.address());
    location.setCoordinates(from.coordinates());
    return location;
}

AuxiliaryData newRecord(const AuxiliaryData &from)
{
    AuxiliaryData data(from.type());
    data.setExternalId(from.externalId());
    const QMap<QString, QString> properties = from.properties();
    for (auto property = properties.begin(); property != properties.end(); ++property)
        data.addProperty(property.key(), property.value());
    return data;
}

/// Copies the values that both a document and a store can hold to a new place. Records that are not stored with their
/// place are left out.
void fillNew(Place &place, const Place &from)
{
    place.setName(from.name());
    place.setDescription(from.description());
    place.setPrivate(from.isPrivate());
    place.setExpiredTime(from.expiryTime());
    for (int i = 0; i < from.tagCount(); ++i)
        place.addTag(from.tag(i));
    for (int i = 0; i < from.locationCount(); ++i)
        place.addLocation(newLocation(from.location(i)));
    for (int i = 0; i < from.auxiliaryDataCount(); ++i) {
        if (const AuxiliaryData data = from.auxiliaryData(i); data.isPersistable())
            place.addAuxiliaryData(newRecord(data));
    }
}

QString readDocument(const QByteArray &line, Place &place)
{
    if (static_cast<std::size_t>(line.size()) > MAX_ITEM_SIZE)
        return QStringLiteral("the line has more than %1 bytes").arg(MAX_ITEM_SIZE);
    const rapidjson::ParseResult checked = checkLists(line);
    if (checked.Code() == rapidjson::kParseErrorTermination)
        return QStringLiteral("a list of more than %1 members").arg(MAX_LIST_LENGTH);
    QString reason;
    const std::unique_ptr<Place> read = PlaceJson::readPlace(line, PlaceJson::Texts::Unicode, nullptr, &reason);
    if (!read && checked.IsError() && !line.contains('\0'))
        return QStringLiteral("not JSON at byte %1: %2")
            .arg(checked.Offset())
            .arg(QLatin1String(rapidjson::GetParseError_En(checked.Code())));
    if (!read)
        return reason.isEmpty() ? QStringLiteral("there is not enough memory to read it") : reason;
    for (int i = 0; i < read->locationCount(); ++i) {
        if (isOffEarth(read->location(i).coordinates()))
            return QStringLiteral("a position that is not on the Earth");
    }
    if (!read->hasPhysicalLocation())
        return QStringLiteral("a place without a position or an address");
    fillNew(place, *read);
    return {};
}

} // namespace

QString readDocuments(Input &input, const ReadOptions & /*options*/, const TakePlace &take)
{
    LineReader lines(input);
    QByteArray line;
    for (int number = 1; lines.next(line); ++number) {
        if (line.trimmed().isEmpty())
            continue;
        auto place = std::make_unique<Place>();
        const QString problem = readDocument(line, *place);
        if (!take({QStringLiteral("line %1").arg(number), problem.isEmpty() ? std::move(place) : nullptr, problem}))
            return {};
    }
    return input.problem();
}

} // namespace formats
