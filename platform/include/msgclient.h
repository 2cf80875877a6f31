// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

/// The platform's message channel: one request, one reply, over a named channel.

#ifdef __cplusplus
extern "C" {
#endif

/// One open channel. It carries one exchange at a time and belongs to one thread at a time.
struct _msgclient_open;

/// A message as a server holds it.
struct _msgserver_data
{
    const void *data;    ///< First byte; null for no message. Borrowed.
    unsigned int length; ///< Number of bytes.
};

enum
{
    MSGCLIENT_OK = 0,         ///< Done.
    MSGCLIENT_TRUNCATED = 240 ///< The reply is longer than the caller's buffer and stays pending on the channel.
};

/// Opens the channel `name`. `reserved` is 0. Returns null and sets errno on failure: ENOENT when nobody serves the
/// channel, EACCES without permission, or where another user than root and the owner of the channel folder could be at
/// the other end. The caller closes the channel with msgclient_close().
/// @param flags 2 to wait for the server to take the connection; no other value is in use.
struct _msgclient_open *msgclient_open(const char *name, int reserved, int flags);

/// Sends `request` and waits for the reply, which goes to `reply` and its length to `reply_length`.
/// Returns MSGCLIENT_OK; MSGCLIENT_TRUNCATED when the reply is longer than `reply_capacity` (`reply_length` is then its
/// full length, and msgclient_get() delivers it); any other value on failure, after which the channel can only be
/// closed. `flags` is 0.
int msgclient_putget(struct _msgclient_open *channel, const void *request, int request_length, void *reply,
                     int reply_capacity, int *reply_length, int flags);

/// Takes the reply that is pending after MSGCLIENT_TRUNCATED. Returns and reports as msgclient_putget() does.
/// `reserved` and `flags` are 0.
int msgclient_get(struct _msgclient_open *channel, int reserved, void *reply, int reply_capacity, int *reply_length,
                  int flags);

/// Closes a channel and drops what is pending on it. Null is allowed. Returns 0.
int msgclient_close(struct _msgclient_open *channel);

#ifdef __cplusplus
}
#endif
