// SPDX-License-Identifier: MIT
#pragma once

#include "Ask.h"
#include "EmpConverterWindow.h"
#include "settings/vconf.h"

// The settings keys of sources, and how they are read and written.

namespace kel {

/// The current and the previous source of each window, in the numbers that applications use.
inline constexpr const char* kMainSource = "db/emp/mainsource";
inline constexpr const char* kPreviousMainSource = "db/emp/previousmainsource";
inline constexpr const char* kPipSource = "db/emp/pipsource";
inline constexpr const char* kPreviousPipSource = "db/emp/previouspipsource";

/// The source of the main window for the TV middleware: widget id, colon, the number that applications use.
inline constexpr const char* kPublishedSource = "db/kel/current_source_type";

/// What the main window shows, as the platform records it: a text. The plug-in only reads it.
inline constexpr const char* kLastService = "db/boot/last_service";

/// Read and write a key. @return false when the store fails or throws.
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
