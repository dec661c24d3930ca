#pragma once

#include "kel/CKELDebug.h"

// How the plug-in logs. A message is two calls of the framework's logger at the message's level: the location line,
// then the message. Macros, since a location is where they stand and the compiler checks their formats.

namespace kel {

/// Levels of messages. Failures are logged at the level of routine lines, so that they are seen with them.
inline constexpr int kFailure = 0;
inline constexpr int kRoutine = 0;
inline constexpr int kInformation = 3;
inline constexpr int kMissingWorker = 3;  // of the engine

inline constexpr int kLogChannel = 2;

}  // namespace kel

/// Logs a message under the name of the operation that it belongs to: `KEL_LOG_AS(name, level, format, ...)`.
#define KEL_LOG_AS(function, level, ...)                                                            \
  (::kel::CKELDebug::PrintLog(::kel::kLogChannel, (level), "[KEL][%s(%d)] ", (function), __LINE__), \
   ::kel::CKELDebug::PrintLog(::kel::kLogChannel, (level), __VA_ARGS__))

/// The same for the operation where it stands.
#define KEL_LOG(level, ...) KEL_LOG_AS(__func__, level, __VA_ARGS__)

/// The line that tells where an operation starts, and the one that marks an error.
#define KEL_LOG_PLACE(file, function, level) \
  KEL_LOG_AS(function, level, "FILE=[%s] FUNCTION=[%s] LINE=[%d]", (file), (function), __LINE__)
#define KEL_LOG_ERROR(file, function, level) \
  KEL_LOG_AS(function, level, "\033[2;31;42m !!!!ERROR!!!![%s][%s][%d] \033[0m", (file), (function), __LINE__)
