// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

/// The data version that a service publishes beside its channel: a number that grows with each change of its data and
/// each start. Optional for a platform.

#ifdef __cplusplus
extern "C" {
#endif

/// Reads the data version of the service on the channel `name`. Does not block. Returns 0 when there is none, and when
/// users other than root and the owner of the channel folder could have written it.
long long dataversion_get(const char *name);

/// Writes the path of the file with the data version, zero-terminated, to `path`. The file may be missing. Returns 0,
/// or -1 with errno set: EINVAL for an invalid name, ENAMETOOLONG when the path needs more than `capacity` bytes.
int dataversion_path(const char *name, char *path, int capacity);

#ifdef __cplusplus
}
#endif
