// SPDX-License-Identifier: MIT
#pragma once

#include "kel/CKELDebug.h"

// Logging of the plug-in. A message consists of two calls of the framework's logger, both at the message's level: the
// location line, then the message. Macros are used, so that each message has its own location and the compiler checks
// its format.
//
// A location is the current operation and one of its lines. An operation sets its name once, with a `LogScope`. Code
// shared by several operations logs under the name of its caller.

namespace kel {

/// Levels of messages. Failures are logged at the level of routine lines, so that they are visible together.
inline constexpr int kFailure = 0;
inline constexpr int kRoutine = 0;
inline constexpr int kInformation = 3;
inline constexpr int kMissingWorker = 3;  // of the engine

inline constexpr int kLogChannel = 2;

/// A function and one of its lines, for location lines.
struct Location {
  /// Converts the name of a function to a location on the current line.
  constexpr Location(const char* name, int where = __builtin_LINE())  // NOLINT(google-explicit-constructor)
      : function(name), line(where) {}

  const char* function;
  int line;
};

/// Sets the current operation: `const LogScope scope(__func__);` on its first line. Until the scope ends, messages have
/// its name, including those of called functions without their own scope. Afterwards the previous operation is current
/// again, also after an exception. Each thread has its own current operation.
class LogScope {
 public:
  explicit LogScope(Location operation) : m_outer(current) { current = operation; }
  LogScope(const LogScope&) = delete;
  LogScope& operator=(const LogScope&) = delete;
  ~LogScope() { current = m_outer; }

  /// The current operation.
  static const char* Name() { return current.function; }

  /// The location of a message. If the current operation itself logs it, that is the message's line. If a called
  /// function logs it, that is the first line of the operation. So the line always belongs to the named function.
  static Location Of(Location message);

 private:
  static inline thread_local Location current{"", 0};

  const Location m_outer;
};

/// Logs the location line of a message.
void LogLocation(Location message, int level);

}  // namespace kel

/// The current line. In a lambda, whose name is not an operation's, the operation's first line is logged.
#define KEL_HERE ::kel::Location(__func__)  // NOLINT(bugprone-lambda-function-name)

/// Logs a message of the current operation: `KEL_LOG(level, format, ...)`.
#define KEL_LOG(level, ...) \
  (::kel::LogLocation(KEL_HERE, (level)), ::kel::CKELDebug::PrintLog(::kel::kLogChannel, (level), __VA_ARGS__))

/// The line that marks the start of an operation, and the line that marks an error.
#define KEL_LOG_PLACE(file, level)                                                     \
  KEL_LOG(level, "FILE=[%s] FUNCTION=[%s] LINE=[%d]", (file), ::kel::LogScope::Name(), \
          ::kel::LogScope::Of(KEL_HERE).line)
#define KEL_LOG_ERROR(file, level)                                                                   \
  KEL_LOG(level, "\033[2;31;42m !!!!ERROR!!!![%s][%s][%d] \033[0m", (file), ::kel::LogScope::Name(), \
          ::kel::LogScope::Of(KEL_HERE).line)
