// SPDX-License-Identifier: MIT
#pragma once

#include "Ask.h"
#include "EmpConverterWindow.h"
#include "settings/vconf.h"

// Reading and writing the settings keys of sources.

namespace kel {

/// Each function returns false when the store fails or throws.
inline bool ReadKey(const char* key, int& value) {
  return Try(kFailed, [&] { return vconf_get_int(key, &value); }) == 0;
}

inline bool WriteKey(const char* key, int value) {
  return Try(kFailed, [&] { return vconf_set_int(key, value); }) == 0;
}

/// True for the seeks that select the source stored as previous.
inline bool IsPreviousSourceSeek(_PL_WINDOW_SEEK eSeek) {
  return eSeek == PL_WINDOW_SEEK_PREVIOUS_SOURCE_6 || eSeek == PL_WINDOW_SEEK_PREVIOUS_SOURCE_8 ||
         eSeek == PL_WINDOW_SEEK_PREVIOUS_SOURCE_9;
}

}  // namespace kel
