// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "GeoJsonReader.h"

#include <places/Place.h>
#include <places/PointOfInterestAuxiliaryData.h>
#include <places/Tags.h>

#include <rapidjson/document.h>
#include <rapidjson/error/en.h>
#include <rapidjson/filereadstream.h>
#include <rapidjson/reader.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <cerrno>
#include <cstdio>
#include <memory>
#include <string>

#include <sys/stat.h>

namespace tool
{

using namespace vela::platform::places;
using rapidjson::SizeType;
using rapidjson::Value;

namespace
{

/// Deepest nesting that a file may have.
constexpr int MAX_DEPTH = 64;

QString textOf(const Value &value)
{
    return QString::fromUtf8(value.GetString(), static_cast<int>(value.GetStringLength()));
}

const Value *memberOf(const Value &object, const char *name)
{
    const auto member = object.FindMember(name);
    return member == object.MemberEnd() ? nullptr : &member->value;
}

/// A string, number or bool as a text; empty for anything else.
QString scalarText(const Value &value)
{
    if (value.IsString())
        return textOf(value);
    if (value.IsInt64())
        return QString::number(value.GetInt64());
    if (value.IsNumber())
        return QString::number(value.GetDouble(), 'g', 17);
    if (value.IsBool())
        return value.GetBool() ? QStringLiteral("true") : QStringLiteral("false");
    return {};
}

/// Position of a Point geometry; invalid for any other.
Coordinates positionOf(const Value &geometry)
{
    const Value *type = memberOf(geometry, "type");
    const Value *numbers = memberOf(geometry, "coordinates");
    if (!type || !type->IsString() || textOf(*type) != QLatin1String("Point") || !numbers || !numbers->IsArray()
        || numbers->Size() < 2 || !(*numbers)[0].IsNumber() || !(*numbers)[1].IsNumber())
        return {};
    Coordinates position((*numbers)[1].GetDouble(), (*numbers)[0].GetDouble());
    if (numbers->Size() > 2 && (*numbers)[2].IsNumber())
        position.setAltitude((*numbers)[2].GetDouble());
    return position;
}

/// Puts the properties of a feature where they belong in a place.
class PropertyTaker
{
public:
    explicit PropertyTaker(Place &place)
        : m_place(place)
    {}

    void take(const QString &name, const Value &value)
    {
        if (value.IsArray())
            return takeList(name, value);
        const QString text = scalarText(value);
        if (text.isEmpty() || takeAddressPart(name, text))
            return;
        if (name == QLatin1String("name"))
            m_place.setName(text);
        else if (name == QLatin1String("description"))
            m_place.setDescription(text);
        else if (name == QLatin1String("kind"))
            takeKind(text);
        else
            takeDetail(name, text);
    }

    /// Finishes the place: what was taken goes into it.
    void finish(const Coordinates &position, const QString &externalId)
    {
        if (m_place.hasTag(QStringLiteral("city")) && m_address.city().isEmpty())
            m_address.setCity(m_place.name());
        Location location;
        location.setCoordinates(position);
        location.setAddress(m_address);
        m_place.addLocation(location);
        m_poi.setExternalId(externalId);
        if (m_poi != PointOfInterestAuxiliaryData())
            m_place.addAuxiliaryData(m_poi);
    }

private:
    bool takeAddressPart(const QString &name, const QString &text)
    {
        using Setter = void (Address::*)(const QString &);
        static constexpr struct
        {
            QLatin1String name;
            Setter set;
        } PARTS[] = {
            {QLatin1String("label"), &Address::setLabel},
            {QLatin1String("houseNumber"), &Address::setHouseNumber},
            {QLatin1String("street"), &Address::setStreet},
            {QLatin1String("city"), &Address::setCity},
            {QLatin1String("region"), &Address::setRegion},
            {QLatin1String("country"), &Address::setCountry},
            {QLatin1String("countryCode"), &Address::setIsoAlpha2CountryCode},
            {QLatin1String("countryCode3"), &Address::setCountryCode},
            {QLatin1String("postalCode"), &Address::setPostalCode},
        };
        for (const auto &part : PARTS) {
            if (part.name == name) {
                (m_address.*part.set)(text);
                return true;
            }
        }
        return false;
    }

    void takeKind(const QString &kind)
    {
        m_place.addTag(kind);
        m_poi.setCategory(kind);
        if (kind.endsWith(QLatin1String("airport")))
            m_place.addTag(Tags::Airport);
    }

    void takeDetail(const QString &name, const QString &text)
    {
        if (name == QLatin1String("phone"))
            m_poi.setPhoneNumber(text);
        else if (name == QLatin1String("email"))
            m_poi.setEmailAddress(text);
        else if (name == QLatin1String("url"))
            m_poi.setUrl(QUrl(text));
        else
            addProperty(name, text);
        if (name == QLatin1String("iata") || name == QLatin1String("icao"))
            m_place.addAlias(text);
    }

    void addProperty(const QString &name, const QString &text)
    {
        AuxiliaryData data = m_poi;
        data.addProperty(name, text);
        m_poi = PointOfInterestAuxiliaryData(data);
    }

    void takeList(const QString &name, const Value &list)
    {
        for (const Value &element : list.GetArray()) {
            const QString text = scalarText(element);
            if (!text.isEmpty() && name == QLatin1String("tags"))
                m_place.addTag(text);
            else if (!text.isEmpty() && name == QLatin1String("aliases"))
                m_place.addAlias(text);
        }
    }

    Place &m_place;
    Address m_address;
    PointOfInterestAuxiliaryData m_poi;
};

/// Fills a place from a feature. Returns why it is no place; empty when it is one.
QString readFeature(const Value &feature, Place &place)
{
    if (!feature.IsObject())
        return QStringLiteral("not a feature");
    const Value *geometry = memberOf(feature, "geometry");
    const Coordinates position = geometry && geometry->IsObject() ? positionOf(*geometry) : Coordinates();
    if (!position.isValid())
        return QStringLiteral("no point on the Earth");
    const Value *properties = memberOf(feature, "properties");
    const Value *name = properties && properties->IsObject() ? memberOf(*properties, "name") : nullptr;
    if (!name || !name->IsString() || name->GetStringLength() == 0)
        return QStringLiteral("no name");

    PropertyTaker taker(place);
    for (const auto &property : properties->GetObject())
        taker.take(textOf(property.name), property.value);
    const Value *id = memberOf(feature, "id");
    taker.finish(position, id ? scalarText(*id) : QString());
    return {};
}

/// Follows the parser through a FeatureCollection and hands out the text of each member of its "features".
class FeatureSplitter
{
public:
    using Ch = char;
    using TakeText = std::function<bool(const char *text)>;

    explicit FeatureSplitter(TakeText take)
        : m_take(std::move(take))
    {}

    [[nodiscard]] bool hadFeatures() const { return m_hadFeatures; }
    [[nodiscard]] bool isTooDeep() const { return m_depth > MAX_DEPTH; }

    bool Null()
    {
        return value([](auto &out) { return out.Null(); });
    }
    bool Bool(bool b)
    {
        return value([b](auto &out) { return out.Bool(b); });
    }
    bool Int(int i)
    {
        return value([i](auto &out) { return out.Int(i); });
    }
    bool Uint(unsigned i)
    {
        return value([i](auto &out) { return out.Uint(i); });
    }
    bool Int64(std::int64_t i)
    {
        return value([i](auto &out) { return out.Int64(i); });
    }
    bool Uint64(std::uint64_t i)
    {
        return value([i](auto &out) { return out.Uint64(i); });
    }
    bool Double(double d)
    {
        return value([d](auto &out) { return out.Double(d); });
    }
    bool RawNumber(const char *text, SizeType length, bool)
    {
        return value([=](auto &out) { return out.String(text, length); });
    }
    bool String(const char *text, SizeType length, bool)
    {
        return value([=](auto &out) { return out.String(text, length); });
    }
    bool StartObject()
    {
        return open([](auto &out) { return out.StartObject(); });
    }
    bool EndObject(SizeType)
    {
        return close([](auto &out) { return out.EndObject(); });
    }
    bool StartArray()
    {
        if (!m_inFeatures && m_depth == 1 && m_afterFeaturesKey) {
            m_inFeatures = m_hadFeatures = true;
            ++m_depth;
            return true;
        }
        return open([](auto &out) { return out.StartArray(); });
    }
    bool EndArray(SizeType)
    {
        if (m_inFeatures && m_depth == LIST_DEPTH) {
            m_inFeatures = false;
            --m_depth;
            return true;
        }
        return close([](auto &out) { return out.EndArray(); });
    }
    bool Key(const char *text, SizeType length, bool)
    {
        m_afterFeaturesKey = m_depth == 1 && std::string(text, length) == "features";
        return !m_inFeatures || m_writer.Key(text, length);
    }

private:
    /// Depth at which the members of "features" stand.
    static constexpr int LIST_DEPTH = 2;

    template <typename Write>
    bool value(Write write)
    {
        m_afterFeaturesKey = false;
        return !m_inFeatures || (write(m_writer) && takeIfWhole());
    }
    template <typename Write>
    bool open(Write write)
    {
        m_afterFeaturesKey = false;
        return ++m_depth <= MAX_DEPTH && (!m_inFeatures || write(m_writer));
    }
    template <typename Write>
    bool close(Write write)
    {
        --m_depth;
        return !m_inFeatures || (write(m_writer) && takeIfWhole());
    }
    bool takeIfWhole()
    {
        if (m_depth > LIST_DEPTH)
            return true;
        const bool goOn = m_take(m_text.GetString());
        m_text.Clear();
        m_writer.Reset(m_text);
        return goOn;
    }

    TakeText m_take;
    rapidjson::StringBuffer m_text;
    rapidjson::Writer<rapidjson::StringBuffer> m_writer{m_text};
    int m_depth = 0;
    bool m_afterFeaturesKey = false;
    bool m_inFeatures = false;
    bool m_hadFeatures = false;
};

struct CloseFile
{
    void operator()(std::FILE *file) const { std::fclose(file); }
};

double sizeOf(std::FILE *file)
{
    struct stat status = {};
    return ::fstat(::fileno(file), &status) == 0 ? static_cast<double>(status.st_size) : 0;
}

} // namespace

GeoJsonReader::GeoJsonReader(const QString &path)
    : m_path(path)
{}

QString GeoJsonReader::read(const Take &take)
{
    const std::unique_ptr<std::FILE, CloseFile> file(std::fopen(m_path.toLocal8Bit().constData(), "rbe"));
    if (!file)
        return qt_error_string(errno);
    char buffer[64 * 1024];
    rapidjson::FileReadStream stream(file.get(), buffer, sizeof buffer);
    const double size = sizeOf(file.get());

    int number = 0;
    FeatureSplitter splitter([&](const char *text) {
        rapidjson::Document document;
        document.Parse<rapidjson::kParseIterativeFlag | rapidjson::kParseFullPrecisionFlag>(text);
        Place place;
        const QString problem = readFeature(document, place);
        m_progress = size > 0 ? static_cast<double>(stream.Tell()) / size : 1;
        return take({++number, problem.isEmpty() ? &place : nullptr, problem});
    });
    constexpr unsigned FLAGS =
        rapidjson::kParseIterativeFlag | rapidjson::kParseFullPrecisionFlag | rapidjson::kParseValidateEncodingFlag;
    rapidjson::Reader parser;
    const rapidjson::ParseResult result = parser.Parse<FLAGS>(stream, splitter);
    if (splitter.isTooDeep())
        return QStringLiteral("nested too deep at byte %1").arg(result.Offset());
    if (result.IsError() && result.Code() != rapidjson::kParseErrorTermination)
        return QStringLiteral("not JSON at byte %1: %2")
            .arg(result.Offset())
            .arg(QLatin1String(rapidjson::GetParseError_En(result.Code())));
    return splitter.hadFeatures() ? QString() : QStringLiteral("not a GeoJSON FeatureCollection");
}

} // namespace tool
