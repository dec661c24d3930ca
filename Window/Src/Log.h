#pragma once

#include "kel/CKELDebug.h"

// How the plug-in logs. A message is two calls of the framework's logger at the message's level: the location line,
// then the message. Macros, since a location is where they stand and the compiler checks their formats.
//
// A location is an operation and a line of it. Code that several operations share takes theirs as an argument, so that
// its messages, too, tell the operation at work.

namespace kel {

/// Levels of messages. Failures are logged at the level of routine lines, so that they are seen with them.
inline constexpr int kFailure = 0;
inline constexpr int kRoutine = 0;
inline constexpr int kInformation = 3;
inline constexpr int kMissingWorker = 3;  // of the engine

inline constexpr int kLogChannel = 2;

/// An operation and a line of its source, as location lines tell them.
struct Location {
  /// The name of an operation becomes a location on the line where it stands.
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

/// The same for the operation where it stands.
#define KEL_LOG(level, ...) KEL_LOG_AS(__func__, level, __VA_ARGS__)

/// The line that tells where an operation starts, and the one that marks an error.
#define KEL_LOG_PLACE(file, at, level)                                                             \
  KEL_LOG_AS(at, level, "FILE=[%s] FUNCTION=[%s] LINE=[%d]", (file), ::kel::Location(at).function, \
             ::kel::Location(at).line)
#define KEL_LOG_ERROR(file, at, level)                                                                           \
  KEL_LOG_AS(at, level, "\033[2;31;42m !!!!ERROR!!!![%s][%s][%d] \033[0m", (file), ::kel::Location(at).function, \
             ::kel::Location(at).line)
