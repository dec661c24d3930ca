// SPDX-License-Identifier: MIT
#pragma once

namespace kel {

/// The framework's logger.
class CKELDebug {
 public:
  /// Writes one formatted text to the framework's log.
  ///
  /// @param channel  the log channel; the plug-in writes to channel 2.
  /// @param level    0 for routine lines and failures, 3 for information; the sink filters by it.
  /// @param format   printf format with its arguments. Nothing is added, not even a line break.
  static void PrintLog(int channel, int level, const char* format, ...) __attribute__((format(printf, 3, 4)));
};

}  // namespace kel
