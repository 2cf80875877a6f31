// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

/// The JSON codec of the platform's publish/subscribe system. Texts are passed through unchanged, normally as UTF-8.

#include <stdbool.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Result of an encoder or decoder function.
typedef enum
{
    PPS_OK = 0,              ///< Done.
    PPS_ERROR_NOT_FOUND = 1, ///< There is no such member or element.
    PPS_ERROR_TYPE = 2,      ///< The value has another type or is out of range.
    PPS_ERROR_STATE = 3,     ///< The call is not allowed in the current state.
    PPS_ERROR_SYNTAX = 4,    ///< The text is not JSON, or nested deeper than 256 levels.
    PPS_ERROR_MEMORY = 5     ///< There is not enough memory.
} pps_status_t;

/// An encoder. Initialize before use, clean up afterwards. Do not copy.
typedef struct
{
    void *impl;
} pps_encoder_t;

/// A decoder. Initialize before use, clean up afterwards. Do not copy.
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

/// Initializes an encoder for a document. `encode_json` must be true: JSON is the only supported form.
pps_status_t pps_encoder_initialize(pps_encoder_t *encoder, bool encode_json);
/// Discards the document and starts a new one.
pps_status_t pps_encoder_reset(pps_encoder_t *encoder);
/// Frees the encoder's memory. May be called again after a clean-up.
void pps_encoder_cleanup(pps_encoder_t *encoder);

/// Each function writes one value. `name` is the member's name inside an object, where null is PPS_ERROR_STATE;
/// elsewhere it is ignored and may be null.
pps_status_t pps_encoder_start_object(pps_encoder_t *encoder, const char *name);
pps_status_t pps_encoder_end_object(pps_encoder_t *encoder);
pps_status_t pps_encoder_start_array(pps_encoder_t *encoder, const char *name);
pps_status_t pps_encoder_end_array(pps_encoder_t *encoder);
pps_status_t pps_encoder_add_string(pps_encoder_t *encoder, const char *name, const char *value);
pps_status_t pps_encoder_add_int(pps_encoder_t *encoder, const char *name, int value);
pps_status_t pps_encoder_add_int64(pps_encoder_t *encoder, const char *name, int64_t value);
/// PPS_ERROR_TYPE for NaN and infinity, which JSON cannot express.
pps_status_t pps_encoder_add_double(pps_encoder_t *encoder, const char *name, double value);
pps_status_t pps_encoder_add_bool(pps_encoder_t *encoder, const char *name, bool value);
pps_status_t pps_encoder_add_null(pps_encoder_t *encoder, const char *name);

/// The text so far, zero-terminated, valid until the next use of the encoder; null while an object or array is open.
const char *pps_encoder_buffer(pps_encoder_t *encoder);
/// Length of the text in bytes, without the terminating zero.
int pps_encoder_length(pps_encoder_t *encoder);

/// Initializes a decoder. A non-null `text` is parsed like in pps_decoder_parse_json_str().
pps_status_t pps_decoder_initialize(pps_decoder_t *decoder, char *text);
/// Frees the decoder's memory. May be called again after a clean-up.
void pps_decoder_cleanup(pps_decoder_t *decoder);
/// Parses a zero-terminated text. The decoder may change the text, which must outlive all values read from it. The
/// decoder is then before the top-level value.
pps_status_t pps_decoder_parse_json_str(pps_decoder_t *decoder, char *text);

/// Enters the object or array `name` of the current object. A null name enters the current element of the current array
/// or, at the start, the top-level value.
pps_status_t pps_decoder_push(pps_decoder_t *decoder, const char *name);
/// Leaves the innermost object or array, and advances to the next element when that is in an array.
pps_status_t pps_decoder_pop(pps_decoder_t *decoder);

/// Type of a member of the current object, or for null of the current element.
pps_node_type_t pps_decoder_type(pps_decoder_t *decoder, const char *name);
/// Number of elements or members of the innermost object or array; 0 when none is entered.
int pps_decoder_length(pps_decoder_t *decoder);
/// Name of the current element of an object; null elsewhere and at the end.
const char *pps_decoder_name(pps_decoder_t *decoder);
/// Moves to an element of the current array or object by its index, from 0.
pps_status_t pps_decoder_goto_index(pps_decoder_t *decoder, int index);

/// Each function reads a member of the current object, or for a null `name` the current element, and advances to the
/// next element. On failure value and position are unchanged.
pps_status_t pps_decoder_get_string(pps_decoder_t *decoder, const char *name, const char **value);
pps_status_t pps_decoder_get_int(pps_decoder_t *decoder, const char *name, int *value);
pps_status_t pps_decoder_get_int64(pps_decoder_t *decoder, const char *name, int64_t *value);
pps_status_t pps_decoder_get_double(pps_decoder_t *decoder, const char *name, double *value);
pps_status_t pps_decoder_get_bool(pps_decoder_t *decoder, const char *name, bool *value);

#ifdef __cplusplus
}
#endif
