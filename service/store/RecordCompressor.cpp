// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "store/RecordCompressor.h"

#include "Limits.h"
#include "places/AuxiliaryData.h"
#include "places/Location.h"
#include "places/Tags.h"
#include "store/Records.h"
#include "store/UnreadablePlace.h"

#include <zstd.h>

#include <new>

namespace placesd
{

using namespace vela::platform::places;

namespace
{

/// Levels below 0 do not entropy-code literals. For such short records that saves no space and takes three times as
/// long.
constexpr int LEVEL = -1;

bool isSuccess(std::size_t result)
{
    return ZSTD_isError(result) == 0;
}

/// Fills a place with texts that many places have.
void fillSample(Place &place, const char *externalId, const QStringList &keys)
{
    Location location;
    location.setCoordinates(Coordinates(46.94800, 7.44740));
    place.setName(QStringLiteral("San"));
    place.addLocation(location);
    place.addTag(Tags::Favorite);
    AuxiliaryData details(AuxiliaryData::TypePointOfInterest);
    details.setExternalId(QLatin1String(externalId));
    AuxiliaryData foreign(QStringLiteral("geojson.properties"));
    for (const QString &key : keys) {
        details.addProperty(key, QStringLiteral("https://www."));
        foreign.addProperty(key, QStringLiteral("\"%1\"").arg(key));
    }
    AuxiliaryData feature(QStringLiteral("geojson.feature"));
    feature.addProperty(QStringLiteral("id"), QStringLiteral("\"%1\"").arg(QLatin1String(externalId)));
    place.addAuxiliaryData(details);
    place.addAuxiliaryData(foreign);
    place.addAuxiliaryData(feature);
}

} // namespace

void RecordCompressor::Free::operator()(ZSTD_CCtx_s *context) const
{
    ZSTD_freeCCtx(context);
}

void RecordCompressor::Free::operator()(ZSTD_DCtx_s *context) const
{
    ZSTD_freeDCtx(context);
}

RecordCompressor::RecordCompressor(const std::string &dictionary)
    : m_packing(ZSTD_createCCtx())
    , m_unpacking(ZSTD_createDCtx())
{
    const bool isReady =
        m_packing && m_unpacking && isSuccess(ZSTD_CCtx_setParameter(m_packing.get(), ZSTD_c_compressionLevel, LEVEL))
        && isSuccess(ZSTD_CCtx_loadDictionary(m_packing.get(), dictionary.data(), dictionary.size()))
        && isSuccess(ZSTD_DCtx_loadDictionary(m_unpacking.get(), dictionary.data(), dictionary.size()));
    if (!isReady)
        throw std::bad_alloc();
}

RecordCompressor::~RecordCompressor() = default;

std::string RecordCompressor::makeDictionary()
{
    Place contact;
    fillSample(contact, "1,1,1", {QStringLiteral("accountId"), QStringLiteral("contactId"), QStringLiteral("email")});
    Place place;
    fillSample(place, "geonames:1234567",
               {QStringLiteral("category"), QStringLiteral("kind"), QStringLiteral("city"), QStringLiteral("airport"),
                QStringLiteral("population"), QStringLiteral("url"), QStringLiteral("phone")});
    // References to the end of the dictionary are the shortest, so put the most frequent record last.
    return fullRecordOf(contact) + headerOf(place) + fullRecordOf(place);
}

std::string RecordCompressor::pack(const std::string &record)
{
    std::string packed(ZSTD_compressBound(record.size()), '\0');
    const std::size_t size =
        ZSTD_compress2(m_packing.get(), packed.data(), packed.size(), record.data(), record.size());
    if (!isSuccess(size))
        throw std::bad_alloc();
    packed.resize(size);
    return packed;
}

std::string RecordCompressor::unpack(const void *bytes, std::size_t size)
{
    const unsigned long long unpacked = ZSTD_getFrameContentSize(bytes, size);
    std::string record;
    bool isWhole = unpacked <= limits::RECORD_SIZE; // an unknown size and an error code are larger
    if (isWhole) {
        record.resize(static_cast<std::size_t>(unpacked));
        isWhole = ZSTD_decompressDCtx(m_unpacking.get(), record.data(), record.size(), bytes, size) == record.size();
    }
    if (!isWhole)
        throw UnreadablePlace();
    return record;
}

} // namespace placesd
