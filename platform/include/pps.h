// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

/// The JSON codec of the platform's publish/subscribe system. Text is passed through byte by byte: it is UTF-8 as far
/// as its writer made it so.

#include <stdbool.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/// What an encoder or decoder function answers.
typedef enum
{
    PPS_OK = 0,              ///< Done.
    PPS_ERROR_NOT_FOUND = 1, ///< There is no such member or element.
    PPS_ERROR_TYPE = 2,      ///< The value is of another type, or does not fit the type asked for.
    PPS_ERROR_STATE = 3,     ///< The call does not fit where the encoder or decoder stands.
    PPS_ERROR_SYNTAX = 4,    ///< The text is not JSON, or nested deeper than 256 levels.
    PPS_ERROR_MEMORY = 5     ///< There is not enough memory.
} pps_status_t;

/// An encoder. Initialise before use, clean up after. Not to be copied.
typedef struct
{
    void *impl;
} pps_encoder_t;

/// A decoder. Initialise before use, clean up after. Not to be copied.
typedef struct
{
    void *impl;
} pps_decoder_t;

/// The type of a value.
typedef enum
{
    PPS_TYPE_NONE = 0, ///< There is no such value.
    PPS_TYPE_NULL,
    PPS_TYPE_BOOL,
    PPS_TYPE_NUMBER,
    PPS_TYPE_STRING,
    PPS_TYPE_ARRAY,
    PPS_TYPE_OBJECT
} pps_node_type_t;

/// Makes an encoder ready for a document. `encode_json` true writes JSON, the only form there is here.
pps_status_t pps_encoder_initialize(pps_encoder_t *encoder, bool encode_json);
/// Drops what was written and starts over.
pps_status_t pps_encoder_reset(pps_encoder_t *encoder);
/// Frees the encoder's memory. Safe on an encoder that was cleaned up already.
void pps_encoder_cleanup(pps_encoder_t *encoder);

/// Each of these writes one value. `name` is the member's name inside an object and is ignored (null is allowed)
/// elsewhere; inside an object null is PPS_ERROR_STATE.
pps_status_t pps_encoder_start_object(pps_encoder_t *encoder, const char *name);
pps_status_t pps_encoder_end_object(pps_encoder_t *encoder);
pps_status_t pps_encoder_start_array(pps_encoder_t *encoder, const char *name);
pps_status_t pps_encoder_end_array(pps_encoder_t *encoder);
pps_status_t pps_encoder_add_string(pps_encoder_t *encoder, const char *name, const char *value);
pps_status_t pps_encoder_add_int(pps_encoder_t *encoder, const char *name, int value);
pps_status_t pps_encoder_add_int64(pps_encoder_t *encoder, const char *name, int64_t value);
/// A value that is not finite cannot be written in JSON and is PPS_ERROR_TYPE.
pps_status_t pps_encoder_add_double(pps_encoder_t *encoder, const char *name, double value);
pps_status_t pps_encoder_add_bool(pps_encoder_t *encoder, const char *name, bool value);
pps_status_t pps_encoder_add_null(pps_encoder_t *encoder, const char *name);

/// The text written so far, terminated by a zero, valid until the encoder is next used; null while an object or array
/// is still open.
const char *pps_encoder_buffer(pps_encoder_t *encoder);
/// Length of the text in bytes, without the terminating zero.
int pps_encoder_length(pps_encoder_t *encoder);

/// Makes a decoder ready. `text`, when not null, is parsed as pps_decoder_parse_json_str() does.
pps_status_t pps_decoder_initialize(pps_decoder_t *decoder, char *text);
/// Frees the decoder's memory. Safe on a decoder that was cleaned up already.
void pps_decoder_cleanup(pps_decoder_t *decoder);
/// Parses a text terminated by a zero, which the decoder may change and which has to live as long as what is read from
/// it. The decoder then stands before the top-level value.
pps_status_t pps_decoder_parse_json_str(pps_decoder_t *decoder, char *text);

/// Enters the object or array `name` of the current object; with null, the current element of the current array or,
/// before the top-level value, that value.
pps_status_t pps_decoder_push(pps_decoder_t *decoder, const char *name);
/// Leaves what was entered last, and goes on to the element behind it when that stands in an array.
pps_status_t pps_decoder_pop(pps_decoder_t *decoder);

/// The type of a member of the current object, or with null of the current element.
pps_node_type_t pps_decoder_type(pps_decoder_t *decoder, const char *name);
/// Number of elements or members of what was entered last; 0 when nothing was.
int pps_decoder_length(pps_decoder_t *decoder);
/// Name of the current element of an object; null elsewhere and at the end.
const char *pps_decoder_name(pps_decoder_t *decoder);
/// Goes to an element of the current array or object by its index, from 0.
pps_status_t pps_decoder_goto_index(pps_decoder_t *decoder, int index);

/// Each of these reads a member of the current object or, with a null `name`, the current element, and then goes on to
/// the element behind it. On failure `value` is unchanged and the position too.
pps_status_t pps_decoder_get_string(pps_decoder_t *decoder, const char *name, const char **value);
pps_status_t pps_decoder_get_int(pps_decoder_t *decoder, const char *name, int *value);
pps_status_t pps_decoder_get_int64(pps_decoder_t *decoder, const char *name, int64_t *value);
pps_status_t pps_decoder_get_double(pps_decoder_t *decoder, const char *name, double *value);
pps_status_t pps_decoder_get_bool(pps_decoder_t *decoder, const char *name, bool *value);

#ifdef __cplusplus
}
#endif
