// SPDX-License-Identifier: MIT
#pragma once

/// @file
/// Choices of the user.

extern "C" {

/// The choices that can be read.
enum system_settings_key_e : int {
  SYSTEM_SETTINGS_KEY_COUNTRY = 0,  ///< the country that the user chose, a number of the platform
};

/// Reads a choice of the user. @return 0 on success, negative on failure, which leaves `*value` as it is.
int system_settings_get_value_int(system_settings_key_e key, int* value);
}
