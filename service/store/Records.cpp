// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "store/Records.h"

#include "model/PlacePrivate.h"
#include "places/Tags.h"
#include "protocol/PlacesAPIDecoder.h"
#include "protocol/PlacesAPIEncoder.h"
#include "store/UnreadablePlace.h"

#include <numeric>

namespace placesd
{

using namespace vela::platform::places;
using orix_places_protocol::PlacesAPIDecoder;
using orix_places_protocol::PlacesAPIEncoder;

namespace
{

/// Longer records get their memory in advance: the encoder would grow in small steps and copy each time.
constexpr std::size_t LONG_TEXT = 16 * 1024;

std::size_t unitsOf(const QStringList &texts)
{
    return std::accumulate(texts.begin(), texts.end(), std::size_t{0}, [](std::size_t sum, const QString &text) {
        return sum + static_cast<std::size_t>(text.size());
    });
}

void makeRoom(PlacesAPIEncoder &encoder, const Place &place)
{
    const PlacePrivate &data = *PlacePrivate::privateFromPublic(&place);
    std::size_t units = unitsOf({data.description()}) + unitsOf(data.tags()) + unitsOf(data.aliases());
    for (const AuxiliaryData &record : data.auxiliaryData()) {
        const QMap<QString, QString> properties = record.properties();
        units += unitsOf(properties.keys()) + unitsOf(properties.values());
    }
    constexpr std::size_t BYTES_OF_UNIT = 3; // at most, in UTF-8
    if (units > LONG_TEXT)
        encoder.ensureBuffer(static_cast<unsigned int>(units * BYTES_OF_UNIT), false);
}

std::string messageOf(const PlacesAPIEncoder &encoder)
{
    char *data = nullptr;
    int length = 0;
    encoder.getData(data, length);
    return std::string(data, static_cast<std::size_t>(length));
}

/// Decodes the object of a record with `decode`.
template <typename Object>
std::unique_ptr<Object> decodeWith(bool (PlacesAPIDecoder::*decode)(Object *&), const std::string &record)
{
    PlacesAPIDecoder decoder(record.data(), static_cast<unsigned int>(record.size()));
    Object *decoded = nullptr;
    if (!(decoder.*decode)(decoded))
        throw UnreadablePlace();
    return std::unique_ptr<Object>(decoded);
}

} // namespace

std::string fullRecordOf(const Place &place)
{
    PlacesAPIEncoder encoder;
    makeRoom(encoder, place);
    encoder.encodePlace(place);
    return messageOf(encoder);
}

std::string headerOf(const Place &place)
{
    PlacesAPIEncoder encoder;
    encoder.encodePlaceHeader(place);
    return messageOf(encoder);
}

std::unique_ptr<Place> decodePlace(const std::string &record)
{
    return decodeWith(&PlacesAPIDecoder::serviceDecodePlace, record);
}

std::unique_ptr<PlaceHeader> decodeHeader(const std::string &record)
{
    return decodeWith(&PlacesAPIDecoder::decodePlaceHeader, record);
}

std::unique_ptr<Place> placeOfHeader(const std::string &header)
{
    const bool isFavorite = decodeHeader(header)->isFavorite();
    std::unique_ptr<Place> place = decodeWith<Place>(&PlacesAPIDecoder::decodePlace, header);
    if (isFavorite)
        place->addTag(Tags::Favorite);
    return place;
}

void addSearchTerm(std::string &record, const QByteArray &utf8)
{
    PlacesAPIDecoder decoder(record.data(), static_cast<unsigned int>(record.size()));
    unsigned int size = 0;
    if (!decoder.serviceSkipToSearchTerm() || !decoder.decode(size) || size != 0)
        return;
    const std::size_t start = record.size() - decoder.remaining() - sizeof size;
    PlacesAPIEncoder text;
    text.encodeString(utf8.toStdString());
    // The term and the number after it are aligned.
    std::string encoded = messageOf(text);
    encoded.resize((encoded.size() + 3) / 4 * 4, PlacesAPIEncoder::FILL);
    record.replace(start, sizeof size, encoded);
}

} // namespace placesd
