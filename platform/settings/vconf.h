// SPDX-License-Identifier: MIT
#pragma once

/// @file
/// The set's store of settings keys, shared by all its processes. Calls that return a number return 0 for success and a
/// negative number for a failure: a missing key, a key of the other type, a store that can't be read or written. A
/// write is durable when the call returns.

extern "C" {

/// Reads an integer key into `*value`, which is unchanged on failure.
int vconf_get_int(const char* key, int* value);

/// Creates or replaces an integer key.
int vconf_set_int(const char* key, int value);

/// Reads a text key. @return a zero-terminated copy that the caller releases with `free`; null on failure.
char* vconf_get_str(const char* key);

/// Creates or replaces a text key.
int vconf_set_str(const char* key, const char* value);
}
