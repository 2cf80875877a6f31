// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "protocol/PPSDecoder.h"

#include <QtCore/QString>

/// The members of a JSON document, one by one. Their texts are eight-bit (ISO 8859-1). Without a name, the element of
/// an array is meant.
namespace vela::platform::places::json
{

/// What a document can hold of a text: each unit of UTF-16 that is not in ISO 8859-1 becomes "?", and so does the null
/// character, which ends a text of the codec.
QByteArray toEightBit(const QString &text);

void write(pps_encoder_t &encoder, const char *name, const QString &text);
void write(pps_encoder_t &encoder, const char *name, bool value);
void write(pps_encoder_t &encoder, const char *name, int value);
void write(pps_encoder_t &encoder, const char *name, qint64 value);
/// Times beyond the signed range are written as negative numbers, and read back as they were.
void write(pps_encoder_t &encoder, const char *name, quint64 value);
void writeUnlessEmpty(pps_encoder_t &encoder, const char *name, const QString &text);
/// Leaves out what is not known, and what JSON cannot express.
void writeIfKnown(pps_encoder_t &encoder, const char *name, double value);

/// Each of these leaves the value alone, and answers false, when there is no such member, when it is of another type,
/// and when it does not fit.
bool read(pps_decoder_t &decoder, const char *name, QString &text);
bool read(pps_decoder_t &decoder, const char *name, bool &value);
bool read(pps_decoder_t &decoder, const char *name, int &value);
bool read(pps_decoder_t &decoder, const char *name, qint64 &value);
bool read(pps_decoder_t &decoder, const char *name, quint64 &value);
bool read(pps_decoder_t &decoder, const char *name, double &value);
bool read(pps_decoder_t &decoder, const char *name, float &value);

/// An enumeration by its number, which may be one that has no name.
template <typename Enumeration>
bool readNumber(pps_decoder_t &decoder, const char *name, Enumeration &value)
{
    int number = 0;
    if (!read(decoder, name, number))
        return false;
    value = static_cast<Enumeration>(number);
    return true;
}

/// Reads inside the object `name`; false when there is none.
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

/// Calls `readElement` for each element of the array, or each member of the object, `name` of that type, which is then
/// the current one.
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
