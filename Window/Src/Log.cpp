// SPDX-License-Identifier: MIT
// Not inline: every message calls this, and inlined it would take a tenth of the code.
#include "Log.h"

namespace kel {

Location LogScope::Of(Location message) {
  return {current.function, message.function == current.function ? message.line : current.line};
}

void LogLocation(Location message, int level) {
  const Location at = LogScope::Of(message);
  CKELDebug::PrintLog(kLogChannel, level, "[KEL][%s(%d)] ", at.function, at.line);
}

}  // namespace kel
