// SPDX-License-Identifier: MIT
#pragma once

/// @file
/// System information about the set.

extern "C" {

/// The values that can be read.
enum system_info_key_e : int {
  SYSTEM_INFO_KEY_REGION_KIND = 0,  ///< the region that the set was built for, a number of the platform
};

/// Reads a value. @return 0 on success; negative on failure, in which case `*value` is unchanged.
int system_info_get_value_int(system_info_key_e key, int* value);
}
