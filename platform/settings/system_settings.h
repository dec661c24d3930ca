// SPDX-License-Identifier: MIT
#pragma once

/// @file
/// Settings that the user has chosen.

extern "C" {

/// The settings that can be read.
enum system_settings_key_e : int {
  SYSTEM_SETTINGS_KEY_COUNTRY = 0,  ///< the country that the user chose, a number of the platform
};

/// Reads a setting. @return 0 on success; negative on failure, in which case `*value` is unchanged.
int system_settings_get_value_int(system_settings_key_e key, int* value);
}
