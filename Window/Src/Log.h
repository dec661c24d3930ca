// SPDX-License-Identifier: MIT
#pragma once

#include "kel/CKELDebug.h"

// How the plug-in logs. A message is two calls of the framework's logger at the message's level: the location line,
// then the message. These are macros, so that they know their own location and the compiler checks their formats.
//
// A location is the name of an operation and a line in it. Code shared by several operations takes the location as an
// argument, so that its messages name the calling operation.

namespace kel {

/// Levels of messages. Failures are logged at the level of routine lines, so that they are visible together.
inline constexpr int kFailure = 0;
inline constexpr int kRoutine = 0;
inline constexpr int kInformation = 3;
inline constexpr int kMissingWorker = 3;  // of the engine

inline constexpr int kLogChannel = 2;

/// The name of an operation and a line of its source, as in location lines.
struct Location {
  /// Converts the name of an operation to a location on the current line.
  constexpr Location(const char* operation, int where = __builtin_LINE())  // NOLINT(google-explicit-constructor)
      : function(operation), line(where) {}

  const char* function;
  int line;
};

inline void LogLocation(Location at, int level) {
  CKELDebug::PrintLog(kLogChannel, level, "[KEL][%s(%d)] ", at.function, at.line);
}

}  // namespace kel

/// Logs a message of an operation: `KEL_LOG_AS(location or name, level, format, ...)`.
#define KEL_LOG_AS(at, level, ...) \
  (::kel::LogLocation((at), (level)), ::kel::CKELDebug::PrintLog(::kel::kLogChannel, (level), __VA_ARGS__))

/// The same for the enclosing function.
#define KEL_LOG(level, ...) KEL_LOG_AS(__func__, level, __VA_ARGS__)

/// The lines that mark the start of an operation and an error.
#define KEL_LOG_PLACE(file, at, level)                                                             \
  KEL_LOG_AS(at, level, "FILE=[%s] FUNCTION=[%s] LINE=[%d]", (file), ::kel::Location(at).function, \
             ::kel::Location(at).line)
#define KEL_LOG_ERROR(file, at, level)                                                                           \
  KEL_LOG_AS(at, level, "\033[2;31;42m !!!!ERROR!!!![%s][%s][%d] \033[0m", (file), ::kel::Location(at).function, \
             ::kel::Location(at).line)
