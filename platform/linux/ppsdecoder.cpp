// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "pps.h"

#include "Export.h"

#include <rapidjson/document.h>

#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <new>
#include <vector>

#include <locale.h>

namespace
{

using rapidjson::Value;

/// Maximum nesting of a document.
constexpr int MAX_DEPTH = 256;

/// Checks the nesting of brackets in a text, which need not be valid JSON.
bool nestsTooDeep(const char *text)
{
    int depth = 0;
    bool inString = false;
    for (; *text; ++text) {
        if (inString && *text == '\\' && text[1])
            ++text;
        else if (*text == '"')
            inString = !inString;
        else if (!inString && (*text == '{' || *text == '['))
            ++depth;
        else if (!inString && (*text == '}' || *text == ']'))
            --depth;
        if (depth > MAX_DEPTH)
            return true;
    }
    return false;
}

/// A document whose numbers are converted by the C library: the parser's own conversions are slightly inexact, and
/// undefined for a zero with an exponent.
class ExactDocument : public rapidjson::Document
{
public:
    /// Parses in place; false when the text is not JSON or a number is out of range.
    bool parse(char *text)
    {
        constexpr unsigned FLAGS =
            rapidjson::kParseInsituFlag | rapidjson::kParseIterativeFlag | rapidjson::kParseNumbersAsStringsFlag;
        rapidjson::InsituStringStream stream(text);
        rapidjson::Reader reader;
        auto build = [&](rapidjson::Document &) { return !reader.Parse<FLAGS>(stream, *this).IsError(); };
        SetNull();
        Populate(build);
        return !reader.HasParseError();
    }

    /// Called by the parser for each number. The text continues after the digits.
    bool RawNumber(const char *digits, rapidjson::SizeType length, bool)
    {
        std::int64_t integer = 0;
        const char *end = digits + length;
        const auto [stop, error] = std::from_chars(digits, end, integer);
        if (stop == end && error == std::errc())
            return Int64(integer);
        static const locale_t cLocale = newlocale(LC_ALL_MASK, "C", nullptr);
        const double real = strtod_l(digits, nullptr, cLocale);
        return std::isfinite(real) && Double(real);
    }
};

class Decoder
{
public:
    pps_status_t parse(char *text)
    {
        m_entered.clear();
        m_document.SetNull();
        return text && !nestsTooDeep(text) && m_document.parse(text) ? PPS_OK : PPS_ERROR_SYNTAX;
    }

    pps_status_t push(const char *name)
    {
        const Value *value = find(name);
        if (!value)
            return PPS_ERROR_NOT_FOUND;
        if (!value->IsObject() && !value->IsArray())
            return PPS_ERROR_TYPE;
        m_entered.push_back({value, 0, name == nullptr});
        return PPS_OK;
    }

    pps_status_t pop()
    {
        if (m_entered.empty())
            return PPS_ERROR_STATE;
        const bool wasElement = m_entered.back().enteredAsElement;
        m_entered.pop_back();
        if (wasElement)
            advance();
        return PPS_OK;
    }

    int length() const { return m_entered.empty() ? 0 : static_cast<int>(m_entered.back().size()); }

    const char *name() const
    {
        if (m_entered.empty() || !m_entered.back().value->IsObject() || m_entered.back().atEnd())
            return nullptr;
        return (m_entered.back().value->MemberBegin() + m_entered.back().index)->name.GetString();
    }

    pps_status_t goTo(int index)
    {
        if (m_entered.empty())
            return PPS_ERROR_STATE;
        if (index < 0 || index >= length())
            return PPS_ERROR_NOT_FOUND;
        m_entered.back().index = static_cast<rapidjson::SizeType>(index);
        return PPS_OK;
    }

    /// The member `name` of the current object, or for null the current element; null when there is none.
    const Value *find(const char *name) const
    {
        if (m_entered.empty())
            return name ? nullptr : &m_document;
        const Level &level = m_entered.back();
        if (!name)
            return level.current();
        if (!level.value->IsObject())
            return nullptr;
        const auto member = level.value->FindMember(name);
        return member == level.value->MemberEnd() ? nullptr : &member->value;
    }

    void advance()
    {
        if (!m_entered.empty() && !m_entered.back().atEnd())
            ++m_entered.back().index;
    }

private:
    struct Level
    {
        const Value *value;
        rapidjson::SizeType index;
        bool enteredAsElement;

        rapidjson::SizeType size() const { return value->IsObject() ? value->MemberCount() : value->Size(); }
        bool atEnd() const { return index >= size(); }
        const Value *current() const
        {
            if (atEnd())
                return nullptr;
            return value->IsObject() ? &(value->MemberBegin() + index)->value : &(*value)[index];
        }
    };

    ExactDocument m_document;
    std::vector<Level> m_entered;
};

Decoder *decoderOf(pps_decoder_t *decoder)
{
    return decoder ? static_cast<Decoder *>(decoder->impl) : nullptr;
}

/// Runs a step on an initialized decoder. No exception leaves the C interface.
template <typename Step>
pps_status_t run(pps_decoder_t *decoder, Step step)
{
    Decoder *impl = decoderOf(decoder);
    if (!impl)
        return PPS_ERROR_STATE;
    try {
        return step(*impl);
    } catch (const std::bad_alloc &) {
        return PPS_ERROR_MEMORY;
    }
}

template <typename Target, typename Is, typename Get>
pps_status_t read(pps_decoder_t *decoder, const char *name, Target *target, Is is, Get get)
{
    return run(decoder, [&](Decoder &impl) {
        const Value *value = impl.find(name);
        if (!value)
            return PPS_ERROR_NOT_FOUND;
        if (!target || !(value->*is)())
            return PPS_ERROR_TYPE;
        *target = (value->*get)();
        if (!name)
            impl.advance();
        return PPS_OK;
    });
}

} // namespace

VELA_SYSTEM_EXPORT pps_status_t pps_decoder_initialize(pps_decoder_t *decoder, char *text)
{
    if (!decoder)
        return PPS_ERROR_STATE;
    decoder->impl = new (std::nothrow) Decoder;
    if (!decoder->impl)
        return PPS_ERROR_MEMORY;
    return text ? pps_decoder_parse_json_str(decoder, text) : PPS_OK;
}

VELA_SYSTEM_EXPORT void pps_decoder_cleanup(pps_decoder_t *decoder)
{
    delete decoderOf(decoder);
    if (decoder)
        decoder->impl = nullptr;
}

VELA_SYSTEM_EXPORT pps_status_t pps_decoder_parse_json_str(pps_decoder_t *decoder, char *text)
{
    return run(decoder, [text](Decoder &impl) { return impl.parse(text); });
}

VELA_SYSTEM_EXPORT pps_status_t pps_decoder_push(pps_decoder_t *decoder, const char *name)
{
    return run(decoder, [name](Decoder &impl) { return impl.push(name); });
}

VELA_SYSTEM_EXPORT pps_status_t pps_decoder_pop(pps_decoder_t *decoder)
{
    return run(decoder, [](Decoder &impl) { return impl.pop(); });
}

VELA_SYSTEM_EXPORT pps_node_type_t pps_decoder_type(pps_decoder_t *decoder, const char *name)
{
    /// Indexed by rapidjson::Type: null, false, true, object, array, string, number.
    constexpr pps_node_type_t TYPES[] = {PPS_TYPE_NULL,  PPS_TYPE_BOOL,   PPS_TYPE_BOOL,  PPS_TYPE_OBJECT,
                                         PPS_TYPE_ARRAY, PPS_TYPE_STRING, PPS_TYPE_NUMBER};
    const Decoder *impl = decoderOf(decoder);
    const Value *value = impl ? impl->find(name) : nullptr;
    return value ? TYPES[value->GetType()] : PPS_TYPE_NONE;
}

VELA_SYSTEM_EXPORT int pps_decoder_length(pps_decoder_t *decoder)
{
    const Decoder *impl = decoderOf(decoder);
    return impl ? impl->length() : 0;
}

VELA_SYSTEM_EXPORT const char *pps_decoder_name(pps_decoder_t *decoder)
{
    const Decoder *impl = decoderOf(decoder);
    return impl ? impl->name() : nullptr;
}

VELA_SYSTEM_EXPORT pps_status_t pps_decoder_goto_index(pps_decoder_t *decoder, int index)
{
    return run(decoder, [index](Decoder &impl) { return impl.goTo(index); });
}

VELA_SYSTEM_EXPORT pps_status_t pps_decoder_get_string(pps_decoder_t *decoder, const char *name, const char **value)
{
    return read(decoder, name, value, &Value::IsString, &Value::GetString);
}

VELA_SYSTEM_EXPORT pps_status_t pps_decoder_get_int(pps_decoder_t *decoder, const char *name, int *value)
{
    return read(decoder, name, value, &Value::IsInt, &Value::GetInt);
}

VELA_SYSTEM_EXPORT pps_status_t pps_decoder_get_int64(pps_decoder_t *decoder, const char *name, std::int64_t *value)
{
    return read(decoder, name, value, &Value::IsInt64, &Value::GetInt64);
}

VELA_SYSTEM_EXPORT pps_status_t pps_decoder_get_double(pps_decoder_t *decoder, const char *name, double *value)
{
    return read(decoder, name, value, &Value::IsNumber, &Value::GetDouble);
}

VELA_SYSTEM_EXPORT pps_status_t pps_decoder_get_bool(pps_decoder_t *decoder, const char *name, bool *value)
{
    return read(decoder, name, value, &Value::IsBool, &Value::GetBool);
}
