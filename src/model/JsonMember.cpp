// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "model/JsonMember.h"

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>

namespace vela::platform::places::json
{

QByteArray toEightBit(const QString &text)
{
    return text.toLatin1().replace('\0', '?');
}

QByteArray toUtf8(const QString &text)
{
    return text.toUtf8().replace('\0', '?');
}

QString Decoder::text(const char *bytes) const
{
    if (texts == PlaceJson::Texts::Latin1)
        return QString::fromLatin1(bytes);
    // fromUtf8() drops a byte order mark, which is a character of the text here.
    const bool isMarked = std::strncmp(bytes, BYTE_ORDER_MARK, std::strlen(BYTE_ORDER_MARK)) == 0;
    return (isMarked ? QString(QChar::ByteOrderMark) : QString()) + QString::fromUtf8(bytes);
}

void write(pps_encoder_t &encoder, const char *name, const QString &text)
{
    pps_encoder_add_string(&encoder, name, toUtf8(text).constData());
}

void write(pps_encoder_t &encoder, const char *name, bool value)
{
    pps_encoder_add_bool(&encoder, name, value);
}

void write(pps_encoder_t &encoder, const char *name, int value)
{
    pps_encoder_add_int(&encoder, name, value);
}

void write(pps_encoder_t &encoder, const char *name, qint64 value)
{
    pps_encoder_add_int64(&encoder, name, value);
}

void write(pps_encoder_t &encoder, const char *name, quint64 value)
{
    write(encoder, name, static_cast<qint64>(value));
}

void writeUnlessEmpty(pps_encoder_t &encoder, const char *name, const QString &text)
{
    if (!text.isEmpty())
        write(encoder, name, text);
}

void writeIfKnown(pps_encoder_t &encoder, const char *name, double value)
{
    if (std::isfinite(value))
        pps_encoder_add_double(&encoder, name, value);
}

bool read(const Decoder &decoder, const char *name, QString &text)
{
    const char *bytes = nullptr;
    if (pps_decoder_get_string(&decoder.codec, name, &bytes) != PPS_OK)
        return false;
    text = decoder.text(bytes);
    return true;
}

bool read(pps_decoder_t &decoder, const char *name, bool &value)
{
    return pps_decoder_get_bool(&decoder, name, &value) == PPS_OK;
}

bool read(pps_decoder_t &decoder, const char *name, int &value)
{
    return pps_decoder_get_int(&decoder, name, &value) == PPS_OK;
}

bool read(pps_decoder_t &decoder, const char *name, qint64 &value)
{
    std::int64_t number = 0;
    if (pps_decoder_get_int64(&decoder, name, &number) != PPS_OK)
        return false;
    value = number;
    return true;
}

bool read(pps_decoder_t &decoder, const char *name, quint64 &value)
{
    qint64 number = 0;
    if (!read(decoder, name, number))
        return false;
    value = static_cast<quint64>(number);
    return true;
}

bool read(pps_decoder_t &decoder, const char *name, double &value)
{
    double number = 0;
    if (pps_decoder_get_double(&decoder, name, &number) != PPS_OK || !std::isfinite(number))
        return false;
    value = number;
    return true;
}

bool read(pps_decoder_t &decoder, const char *name, float &value)
{
    double number = 0;
    if (!read(decoder, name, number) || std::fabs(number) > std::numeric_limits<float>::max())
        return false;
    value = static_cast<float>(number);
    return true;
}

} // namespace vela::platform::places::json
