// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "pps.h"

#include "Export.h"

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <climits>
#include <cmath>
#include <cstdint>
#include <new>
#include <vector>

namespace
{

/// Writes one document and checks that every call is allowed in the current state; the JSON writer does not.
class Encoder
{
public:
    void reset()
    {
        m_text.Clear();
        m_writer.Reset(m_text);
        m_open.clear();
    }

    template <typename Write>
    pps_status_t add(const char *name, Write write)
    {
        if (m_open.empty() ? m_writer.IsComplete() : m_open.back() == PPS_TYPE_OBJECT && !name)
            return PPS_ERROR_STATE;
        if (!m_open.empty() && m_open.back() == PPS_TYPE_OBJECT)
            m_writer.Key(name);
        return write(m_writer) ? PPS_OK : PPS_ERROR_TYPE;
    }

    pps_status_t start(const char *name, pps_node_type_t type)
    {
        const pps_status_t status = add(name, [type](auto &writer) {
            return type == PPS_TYPE_OBJECT ? writer.StartObject() : writer.StartArray();
        });
        if (status == PPS_OK)
            m_open.push_back(type);
        return status;
    }

    pps_status_t end(pps_node_type_t type)
    {
        if (m_open.empty() || m_open.back() != type)
            return PPS_ERROR_STATE;
        m_open.pop_back();
        type == PPS_TYPE_OBJECT ? m_writer.EndObject() : m_writer.EndArray();
        return PPS_OK;
    }

    const char *text() { return m_writer.IsComplete() ? m_text.GetString() : nullptr; }
    int length() { return m_text.GetSize() > INT_MAX ? 0 : static_cast<int>(m_text.GetSize()); }

private:
    rapidjson::StringBuffer m_text;
    rapidjson::Writer<rapidjson::StringBuffer> m_writer{m_text};
    std::vector<pps_node_type_t> m_open;
};

Encoder *encoderOf(pps_encoder_t *encoder)
{
    return encoder ? static_cast<Encoder *>(encoder->impl) : nullptr;
}

/// Runs a step on an initialized encoder. No exception leaves the C interface.
template <typename Step>
pps_status_t run(pps_encoder_t *encoder, Step step)
{
    Encoder *impl = encoderOf(encoder);
    if (!impl)
        return PPS_ERROR_STATE;
    try {
        return step(*impl);
    } catch (const std::bad_alloc &) {
        return PPS_ERROR_MEMORY;
    }
}

template <typename Write>
pps_status_t addValue(pps_encoder_t *encoder, const char *name, Write write)
{
    return run(encoder, [&](Encoder &impl) { return impl.add(name, write); });
}

} // namespace

VELA_SYSTEM_EXPORT pps_status_t pps_encoder_initialize(pps_encoder_t *encoder, bool encode_json)
{
    if (!encoder || !encode_json)
        return PPS_ERROR_STATE;
    encoder->impl = new (std::nothrow) Encoder;
    return encoder->impl ? PPS_OK : PPS_ERROR_MEMORY;
}

VELA_SYSTEM_EXPORT pps_status_t pps_encoder_reset(pps_encoder_t *encoder)
{
    return run(encoder, [](Encoder &impl) { return impl.reset(), PPS_OK; });
}

VELA_SYSTEM_EXPORT void pps_encoder_cleanup(pps_encoder_t *encoder)
{
    delete encoderOf(encoder);
    if (encoder)
        encoder->impl = nullptr;
}

VELA_SYSTEM_EXPORT pps_status_t pps_encoder_start_object(pps_encoder_t *encoder, const char *name)
{
    return run(encoder, [&](Encoder &impl) { return impl.start(name, PPS_TYPE_OBJECT); });
}

VELA_SYSTEM_EXPORT pps_status_t pps_encoder_end_object(pps_encoder_t *encoder)
{
    return run(encoder, [](Encoder &impl) { return impl.end(PPS_TYPE_OBJECT); });
}

VELA_SYSTEM_EXPORT pps_status_t pps_encoder_start_array(pps_encoder_t *encoder, const char *name)
{
    return run(encoder, [&](Encoder &impl) { return impl.start(name, PPS_TYPE_ARRAY); });
}

VELA_SYSTEM_EXPORT pps_status_t pps_encoder_end_array(pps_encoder_t *encoder)
{
    return run(encoder, [](Encoder &impl) { return impl.end(PPS_TYPE_ARRAY); });
}

VELA_SYSTEM_EXPORT pps_status_t pps_encoder_add_string(pps_encoder_t *encoder, const char *name, const char *value)
{
    if (!value)
        return PPS_ERROR_TYPE;
    return addValue(encoder, name, [value](auto &writer) { return writer.String(value); });
}

VELA_SYSTEM_EXPORT pps_status_t pps_encoder_add_int(pps_encoder_t *encoder, const char *name, int value)
{
    return addValue(encoder, name, [value](auto &writer) { return writer.Int(value); });
}

VELA_SYSTEM_EXPORT pps_status_t pps_encoder_add_int64(pps_encoder_t *encoder, const char *name, std::int64_t value)
{
    return addValue(encoder, name, [value](auto &writer) { return writer.Int64(value); });
}

VELA_SYSTEM_EXPORT pps_status_t pps_encoder_add_double(pps_encoder_t *encoder, const char *name, double value)
{
    if (!std::isfinite(value))
        return PPS_ERROR_TYPE;
    return addValue(encoder, name, [value](auto &writer) { return writer.Double(value); });
}

VELA_SYSTEM_EXPORT pps_status_t pps_encoder_add_bool(pps_encoder_t *encoder, const char *name, bool value)
{
    return addValue(encoder, name, [value](auto &writer) { return writer.Bool(value); });
}

VELA_SYSTEM_EXPORT pps_status_t pps_encoder_add_null(pps_encoder_t *encoder, const char *name)
{
    return addValue(encoder, name, [](auto &writer) { return writer.Null(); });
}

VELA_SYSTEM_EXPORT const char *pps_encoder_buffer(pps_encoder_t *encoder)
{
    Encoder *impl = encoderOf(encoder);
    return impl ? impl->text() : nullptr;
}

VELA_SYSTEM_EXPORT int pps_encoder_length(pps_encoder_t *encoder)
{
    Encoder *impl = encoderOf(encoder);
    return impl ? impl->length() : 0;
}
