// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "Format.h"

#include "CsvReader.h"
#include "DocumentReader.h"
#include "GeoJsonReader.h"
#include "GeoJsonWriter.h"
#include "TextWriter.h"
#include "VCardReader.h"
#include "VCardWriter.h"
#include "XmlReader.h"

#include <places/PlaceJson.h>

#include <QtCore/QFileInfo>
#include <QtCore/QRegularExpression>

namespace formats
{

namespace
{

using vela::platform::places::Place;

QByteArray toDocument(const Place &place)
{
    return vela::platform::places::PlaceJson::write(place);
}

constexpr TextForm GEOJSON{toGeoJsonFeature, "{\"type\":\"FeatureCollection\",\"features\":[\n", ",\n", "\n]}\n"};
constexpr TextForm DOCUMENTS{toDocument, "", "\n", "\n"};
constexpr TextForm VCARDS{toVCard, "", "", ""};

template <const TextForm &FORM>
std::unique_ptr<PlaceWriter> makeTextWriter(QIODevice &out)
{
    return std::make_unique<TextWriter>(out, FORM);
}

const Format FORMATS[] = {
    {"geojson", " geojson geojsonl ", readGeoJson, makeTextWriter<GEOJSON>},
    {"json", " jsonl ndjson ", readDocuments, makeTextWriter<DOCUMENTS>},
    {"gpx", " gpx ", readGpx, nullptr},
    {"kml", " kml ", readKml, nullptr},
    {"csv", " csv tsv ", readCsv, nullptr},
    {"vcard", " vcf vcard ", readVCards, makeTextWriter<VCARDS>},
};

} // namespace

const Format *formatByName(const QString &name)
{
    for (const Format &format : FORMATS) {
        if (name == QLatin1String(format.name))
            return &format;
    }
    return nullptr;
}

const Format *formatByPath(const QString &path)
{
    const QString extension = QStringLiteral(" %1 ").arg(QFileInfo(path).suffix().toLower());
    for (const Format &format : FORMATS) {
        if (extension.size() > 2 && QLatin1String(format.extensions).contains(extension))
            return &format;
    }
    return nullptr;
}

const Format &formatByContent(const QByteArray &head)
{
    // The texts of a document may be named "features" too.
    static const QRegularExpression GEOJSON(
        QStringLiteral(R"("type"\s*:\s*"Feature(Collection)?"|"features"\s*:\s*\[)"));
    const QByteArray text = head.trimmed();
    if (text.startsWith('<'))
        return *formatByName(text.contains("<kml") ? QStringLiteral("kml") : QStringLiteral("gpx"));
    if (text.toUpper().startsWith("BEGIN:VCARD"))
        return *formatByName(QStringLiteral("vcard"));
    if (!text.startsWith('{') && !text.startsWith('['))
        return *formatByName(QStringLiteral("csv"));
    const bool isGeoJson = text.startsWith('[') || GEOJSON.match(QString::fromUtf8(text)).hasMatch();
    return *formatByName(isGeoJson ? QStringLiteral("geojson") : QStringLiteral("json"));
}

QStringList formatNames(bool onlyWritable)
{
    QStringList names;
    for (const Format &format : FORMATS) {
        if (format.makeWriter || !onlyWritable)
            names.append(QLatin1String(format.name));
    }
    return names;
}

} // namespace formats
