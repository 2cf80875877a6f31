// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "places/PlaceJson.h"
#include "protocol/PPSDecoder.h"

#include <QtCore/QString>

/// The members of a JSON document. Texts are written as UTF-8. A null name is the element of an array.
namespace vela::platform::places::json
{

/// The text in ISO 8859-1. Other characters become "?", as does the null character, which ends a text of the codec.
QByteArray toEightBit(const QString &text);
/// The text in UTF-8. The null character and surrogates without their pair become "?".
QByteArray toUtf8(const QString &text);

/// The byte order mark in UTF-8.
constexpr char BYTE_ORDER_MARK[] = "\xEF\xBB\xBF";

/// A decoder and the encoding of its texts.
struct Decoder
{
    pps_decoder_t &codec;
    PlaceJson::Texts texts;

    operator pps_decoder_t &() const { return codec; }
    /// The text of bytes of the codec.
    [[nodiscard]] QString text(const char *bytes) const;
};

void write(pps_encoder_t &encoder, const char *name, const QString &text);
void write(pps_encoder_t &encoder, const char *name, bool value);
void write(pps_encoder_t &encoder, const char *name, int value);
void write(pps_encoder_t &encoder, const char *name, qint64 value);
/// Times beyond the signed range are written as negative numbers and read back unchanged.
void write(pps_encoder_t &encoder, const char *name, quint64 value);
void writeUnlessEmpty(pps_encoder_t &encoder, const char *name, const QString &text);
/// Writes a finite number; leaves out NaN and infinity.
void writeIfKnown(pps_encoder_t &encoder, const char *name, double value);

/// Each function returns false and leaves the value unchanged when the member is missing, has another type or is out of
/// range.
bool read(const Decoder &decoder, const char *name, QString &text);
bool read(pps_decoder_t &decoder, const char *name, bool &value);
bool read(pps_decoder_t &decoder, const char *name, int &value);
bool read(pps_decoder_t &decoder, const char *name, qint64 &value);
bool read(pps_decoder_t &decoder, const char *name, quint64 &value);
bool read(pps_decoder_t &decoder, const char *name, double &value);
bool read(pps_decoder_t &decoder, const char *name, float &value);

/// Reads an enumerator by its number, also a number without a name.
template <typename Enumeration>
bool readNumber(pps_decoder_t &decoder, const char *name, Enumeration &value)
{
    int number = 0;
    if (!read(decoder, name, number))
        return false;
    value = static_cast<Enumeration>(number);
    return true;
}

/// Calls `readMembers` inside the object `name`; false when there is none.
template <typename Read>
bool readObject(pps_decoder_t &decoder, const char *name, Read readMembers)
{
    if (pps_decoder_type(&decoder, name) != PPS_TYPE_OBJECT)
        return false;
    const PPSDecoder::PushResourceManager object(decoder, name);
    if (object.isEntered())
        readMembers();
    return object.isEntered();
}

/// Calls `readElement` for each element of the array, or member of the object, `name` of that type. The element is
/// entered.
template <typename Read>
void readEach(pps_decoder_t &decoder, const char *name, pps_node_type_t type, Read readElement)
{
    if (pps_decoder_type(&decoder, name) != type)
        return;
    const PPSDecoder::PushResourceManager list(decoder, name);
    for (int i = 0; list.isEntered() && pps_decoder_goto_index(&decoder, i) == PPS_OK; ++i)
        readElement();
}

} // namespace vela::platform::places::json
