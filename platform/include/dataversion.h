// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

/// The data version that a service publishes beside its channel: a number that grows with each change of what it
/// stores, and when it starts. A platform need not have it.

#ifdef __cplusplus
extern "C" {
#endif

/// Reads the data version of the service of the channel `name`. Asks nobody and waits for nobody. Returns 0 where there
/// is none, or where another user than root and the owner of the channel folder could have written it.
long long dataversion_get(const char *name);

/// Writes the path of the file that changes with the data version, with a terminating zero, to `path`. The file need
/// not be there yet. Returns 0, or -1 with errno set: EINVAL for a name that cannot be one, ENAMETOOLONG when the path
/// takes more than `capacity` bytes.
int dataversion_path(const char *name, char *path, int capacity);

#ifdef __cplusplus
}
#endif
