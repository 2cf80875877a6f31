// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

/// The platform's message channel: one request, one reply, over a named channel.

#ifdef __cplusplus
extern "C" {
#endif

/// An open channel, for one exchange and one thread at a time.
struct _msgclient_open;

/// A message in a server.
struct _msgserver_data
{
    const void *data;    ///< First byte; null for no message. Not owned.
    unsigned int length; ///< Number of bytes.
};

enum
{
    MSGCLIENT_OK = 0,         ///< Done.
    MSGCLIENT_TRUNCATED = 240 ///< The reply is longer than the caller's buffer and remains pending on the channel.
};

/// Opens the channel `name`. `reserved` is 0. Returns null and sets errno on failure: ENOENT when no service listens,
/// EACCES without permission, and when the peer could be a user other than root and the owner of the channel folder.
/// Close the channel with msgclient_close().
/// @param flags 2 to wait until the server accepts the connection; no other values.
struct _msgclient_open *msgclient_open(const char *name, int reserved, int flags);

/// Sends `request` and waits for the reply, which is written to `reply`, and its length to `reply_length`. Returns
/// MSGCLIENT_OK; MSGCLIENT_TRUNCATED when the reply is longer than `reply_capacity` (`reply_length` is then its full
/// length; fetch it with msgclient_get()); another value on failure, after which the channel can only be closed.
/// `flags` is 0.
int msgclient_putget(struct _msgclient_open *channel, const void *request, int request_length, void *reply,
                     int reply_capacity, int *reply_length, int flags);

/// Fetches the pending reply after MSGCLIENT_TRUNCATED. Results as for msgclient_putget(). `reserved` and `flags` are
/// 0.
int msgclient_get(struct _msgclient_open *channel, int reserved, void *reply, int reply_capacity, int *reply_length,
                  int flags);

/// Closes a channel and drops a pending reply. Null is allowed. Returns 0.
int msgclient_close(struct _msgclient_open *channel);

#ifdef __cplusplus
}
#endif
