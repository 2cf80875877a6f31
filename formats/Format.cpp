// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "Format.h"

#include "ArchiveDevice.h"
#include "CsvReader.h"
#include "DocumentReader.h"
#include "GeoJsonReader.h"
#include "GeoJsonWriter.h"
#include "Input.h"
#include "TextWriter.h"
#include "VCardReader.h"
#include "VCardWriter.h"
#include "XmlReader.h"

#include <places/PlaceJson.h>

#include <QtCore/QFileInfo>
#include <QtCore/QRegularExpression>

#include <string_view>

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
    {"geojson", " geojson geojsonl json ", readGeoJson, makeTextWriter<GEOJSON>},
    {"json", " jsonl ndjson ", readDocuments, makeTextWriter<DOCUMENTS>},
    {"gpx", " gpx ", readGpx, nullptr},
    {"kml", " kml ", readKml, nullptr},
    {"csv", " csv tsv ", readCsv, nullptr},
    {"vcard", " vcf vcard ", readVCards, makeTextWriter<VCARDS>},
};

bool isJsonFormat(const Format &format)
{
    return format.read == readGeoJson || format.read == readDocuments;
}

/// Removes leading blanks and record separators of JSON text sequences (RFC 8142).
QByteArray textOf(const QByteArray &head)
{
    constexpr std::string_view BLANKS = " \t\r\n\x1E";
    int start = 0;
    while (start < head.size() && BLANKS.find(head[start]) != std::string_view::npos)
        ++start;
    return head.mid(start);
}

/// The JSON format of a text; null when it is not JSON or not recognised.
const Format *jsonByContent(const QByteArray &text)
{
    // A document may contain the name "features" too.
    static const QRegularExpression FEATURES(
        QStringLiteral(R"re("type"\s*:\s*"Feature(Collection)?"|"(features|elements)"\s*:\s*\[)re"));
    static const QRegularExpression DOCUMENT(QStringLiteral(R"re("complete"\s*:\s*(true|false))re"));
    if (!text.startsWith('{') && !text.startsWith('['))
        return nullptr;
    const QString head = QString::fromUtf8(text);
    if (text.startsWith('[') || FEATURES.match(head).hasMatch())
        return formatByName(QStringLiteral("geojson"));
    return DOCUMENT.match(head).hasMatch() ? formatByName(QStringLiteral("json")) : nullptr;
}

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
    const QString extension = QStringLiteral(" %1 ").arg(QFileInfo(withoutCompression(path)).suffix().toLower());
    for (const Format &format : FORMATS) {
        if (extension.size() > 2 && QLatin1String(format.extensions).contains(extension))
            return &format;
    }
    return nullptr;
}

const Format &formatByContent(const QByteArray &head)
{
    const QByteArray text = textOf(head);
    if (const Format *json = jsonByContent(text))
        return *json;
    if (text.startsWith('<'))
        return *formatByName(text.contains("<kml") ? QStringLiteral("kml") : QStringLiteral("gpx"));
    if (text.left(12).toUpper().startsWith("BEGIN:VCARD"))
        return *formatByName(QStringLiteral("vcard"));
    return *formatByName(text.startsWith('{') ? QStringLiteral("json") : QStringLiteral("csv"));
}

const Format &formatOf(const Input &input)
{
    const Format *named = formatByPath(input.name());
    const Format *json = jsonByContent(textOf(input.head()));
    const bool isJson = json && (!named || isJsonFormat(*named));
    return isJson ? *json : named ? *named : formatByContent(input.head());
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
