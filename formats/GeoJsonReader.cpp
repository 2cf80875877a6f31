// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "GeoJsonReader.h"

#include "ExactJson.h"
#include "Feature.h"
#include "Input.h"

#include <places/Place.h>

#include <rapidjson/error/en.h>
#include <rapidjson/reader.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <string>
#include <utility>

namespace formats
{

using namespace vela::platform::places;
using rapidjson::SizeType;

namespace
{

/// Maximum nesting of a file. A feature nested deeper than MAX_DEPTH is left out; reading stops at a file nested deeper
/// than this.
constexpr int MAX_FILE_DEPTH = 10000;

/// An input as a RapidJSON stream. It ends early at a token that is too large.
class InputStream
{
public:
    using Ch = char;

    explicit InputStream(Input &input)
        : m_input(input)
    {
        fill();
    }

    [[nodiscard]] char Peek() const { return m_at < m_count ? m_buffer[m_at] : '\0'; }
    char Take()
    {
        const char taken = Peek();
        if (m_at < m_count && ++m_at == m_count)
            fill();
        return taken;
    }
    [[nodiscard]] std::size_t Tell() const { return m_before + m_at; }
    [[nodiscard]] bool isAtEnd() const { return m_at == m_count; }
    /// Marks the end of a token.
    void endToken() { m_tokenStart = Tell(); }
    [[nodiscard]] bool isTokenTooLarge() const { return Tell() - m_tokenStart > MAX_ITEM_SIZE; }

    // Required for parsing in place; never called.
    char *PutBegin() { return nullptr; }
    void Put(char /*c*/) {}
    void Flush() {}
    std::size_t PutEnd(char * /*begin*/) { return 0; }

private:
    void fill()
    {
        m_before += m_count;
        m_at = 0;
        m_count = isTokenTooLarge() ? 0 : m_input.read(m_buffer, sizeof m_buffer);
    }

    Input &m_input;
    char m_buffer[64 * 1024];
    std::size_t m_count = 0;
    std::size_t m_at = 0;
    std::size_t m_before = 0;
    std::size_t m_tokenStart = 0;
};

/// Splits a text into possible features, each as a text: the members of a top-level "features", or the whole text when
/// it has none or has a type other than a collection.
class FeatureSplitter
{
public:
    using Ch = char;
    /// Takes a text, or the reason why it is incomplete.
    using TakeText = std::function<bool(const char *text, const char *problem, bool isMember)>;

    FeatureSplitter(InputStream &stream, TakeText take)
        : m_stream(stream)
        , m_take(std::move(take))
    {}

    [[nodiscard]] bool isTooDeep() const { return m_depth > MAX_FILE_DEPTH; }
    /// True when features were handed out and a "type" behind them is not a collection.
    [[nodiscard]] bool isNoCollection() const { return m_hadFeatures && m_isOtherType; }

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
    /// Numbers are passed on as written. A number beyond double makes its feature invalid; one that the parser itself
    /// refuses as too large ends the file.
    bool RawNumber(const char *text, SizeType length, bool)
    {
        return value([=](auto &out) { return out.RawValue(text, length, rapidjson::kNumberType); });
    }
    bool String(const char *text, SizeType length, bool)
    {
        if (m_afterTypeKey)
            m_isOtherType = std::string(text, length) != "FeatureCollection";
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
        if (m_afterFeaturesKey && !m_isOtherType) {
            m_memberDepth = LIST_DEPTH;
            m_hadFeatures = true;
            m_afterFeaturesKey = false;
            ++m_depth;
            reset();
            return true;
        }
        return open([](auto &out) { return out.StartArray(); });
    }
    bool EndArray(SizeType)
    {
        if (m_memberDepth == LIST_DEPTH && m_depth == LIST_DEPTH) {
            m_memberDepth = 0;
            --m_depth;
            m_stream.endToken();
            return true;
        }
        return close([](auto &out) { return out.EndArray(); });
    }
    bool Key(const char *text, SizeType length, bool)
    {
        m_afterFeaturesKey = m_depth == 1 && std::string(text, length) == "features";
        m_afterTypeKey = m_depth == 1 && std::string(text, length) == "type";
        write([=](auto &out) { return out.Key(text, length); });
        return true;
    }

private:
    /// Depth of the members of "features".
    static constexpr int LIST_DEPTH = 2;

    template <typename Write>
    void write(Write write)
    {
        m_stream.endToken();
        if (m_problem || (m_hadFeatures && m_memberDepth != LIST_DEPTH))
            return;
        if (m_depth - m_memberDepth > MAX_DEPTH)
            m_problem = "nested too deep";
        else if (m_text.GetSize() > MAX_ITEM_SIZE)
            m_problem = "too large";
        else
            write(m_writer);
    }
    template <typename Write>
    bool value(Write writeValue)
    {
        write(writeValue);
        return takeIfWhole();
    }
    template <typename Write>
    bool open(Write writeStart)
    {
        m_afterFeaturesKey = false;
        m_afterTypeKey = false;
        ++m_depth;
        write(writeStart);
        return m_depth <= MAX_FILE_DEPTH;
    }
    template <typename Write>
    bool close(Write writeEnd)
    {
        write(writeEnd);
        --m_depth;
        return takeIfWhole();
    }
    bool takeIfWhole()
    {
        if (m_depth > m_memberDepth || (m_hadFeatures && m_memberDepth == 0))
            return true;
        const bool goOn = m_take(m_text.GetString(), m_problem, m_hadFeatures);
        reset();
        return goOn;
    }
    void reset()
    {
        m_problem = nullptr;
        m_text.Clear();
        m_writer.Reset(m_text);
    }

    InputStream &m_stream;
    TakeText m_take;
    rapidjson::StringBuffer m_text;
    rapidjson::Writer<rapidjson::StringBuffer> m_writer{m_text};
    const char *m_problem = nullptr;
    int m_depth = 0;
    int m_memberDepth = 0;
    bool m_afterFeaturesKey = false;
    bool m_afterTypeKey = false;
    bool m_hadFeatures = false;
    bool m_isOtherType = false;
};

/// Reads places from the texts and counts them.
class FeatureTaker
{
public:
    explicit FeatureTaker(const TakePlace &take)
        : m_take(take)
    {}

    /// True when the first text of the file is not GeoJSON.
    [[nodiscard]] bool isNoGeoJson() const { return m_noGeoJson; }

    bool take(const char *text, const char *problem, bool isMember)
    {
        ExactDocument feature;
        auto place = std::make_unique<Place>();
        QString why = QLatin1String(problem);
        const bool isWhole = !problem && !feature.read(text).IsError();
        m_noGeoJson = m_count == 0 && !isMember && isWhole && !isFeature(feature);
        if (m_noGeoJson)
            return false;
        if (!problem)
            why = isWhole ? readFeature(feature, *place) : QStringLiteral("a number is too large");
        const QString where = QStringLiteral("feature %1").arg(++m_count);
        return m_take({where, why.isEmpty() ? std::move(place) : nullptr, why});
    }

private:
    static bool isFeature(const rapidjson::Document &value)
    {
        return value.IsObject() && value.HasMember("type") && value["type"] == "Feature";
    }

    const TakePlace &m_take;
    int m_count = 0;
    bool m_noGeoJson = false;
};

QString problemAt(const char *problem, std::size_t position, const char *detail = "")
{
    return QStringLiteral("%1 at byte %2%3").arg(QLatin1String(problem)).arg(position).arg(QLatin1String(detail));
}

} // namespace

QString readGeoJson(Input &input, const ReadOptions & /*options*/, const TakePlace &take)
{
    constexpr unsigned FLAGS = rapidjson::kParseIterativeFlag | rapidjson::kParseNumbersAsStringsFlag
                               | rapidjson::kParseValidateEncodingFlag | rapidjson::kParseStopWhenDoneFlag;
    InputStream stream(input);
    FeatureTaker taker(take);
    rapidjson::Reader parser;
    do {
        rapidjson::SkipWhitespace(stream);
        const std::size_t start = stream.Tell();
        FeatureSplitter splitter(stream, [&taker](const char *text, const char *problem, bool isMember) {
            return taker.take(text, problem, isMember);
        });
        const rapidjson::ParseResult result = parser.Parse<FLAGS>(stream, splitter);
        if (splitter.isTooDeep())
            return problemAt("nested too deep", result.Offset());
        if (taker.isNoGeoJson() || splitter.isNoCollection())
            return problemAt("neither a GeoJSON FeatureCollection nor a Feature", start);
        if (result.Code() == rapidjson::kParseErrorTermination)
            return {};
        if (!input.problem().isEmpty())
            return input.problem();
        if (result.IsError() && stream.isTokenTooLarge())
            return problemAt("a text or number is too large", result.Offset());
        if (result.IsError())
            return problemAt("not JSON", result.Offset(),
                             (std::string(": ") + rapidjson::GetParseError_En(result.Code())).c_str());
        rapidjson::SkipWhitespace(stream);
        if (stream.isTokenTooLarge())
            return problemAt("too much blank space", stream.Tell());
    } while (!stream.isAtEnd());
    return {};
}

} // namespace formats
