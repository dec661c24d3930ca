// SPDX-License-Identifier: MIT
#pragma once

#include "kel/CKELDebug.h"

// How the plug-in logs. A message is two calls of the framework's logger at the message's level: the location line,
// then the message. These are macros, so that they know their own location and the compiler checks their formats.
//
// A location is the operation at work and a line of it. An operation makes itself known by a `LogScope`, once; code
// that several operations share logs in the name of the one that called it.

namespace kel {

/// Levels of messages. Failures are logged at the level of routine lines, so that they are visible together.
inline constexpr int kFailure = 0;
inline constexpr int kRoutine = 0;
inline constexpr int kInformation = 3;
inline constexpr int kMissingWorker = 3;  // of the engine

inline constexpr int kLogChannel = 2;

/// A function and a line of it, as location lines tell them.
struct Location {
  /// The name of a function becomes a location on the line where it stands.
  constexpr Location(const char* name, int where = __builtin_LINE())  // NOLINT(google-explicit-constructor)
      : function(name), line(where) {}

  const char* function;
  int line;
};

/// Names the operation at work: `const LogScope scope(__func__);` on its first line. Until it ends all is logged in its
/// name, also what the functions log that it calls, but those with a scope of their own. The operation before is then
/// at work again, also after an exception. Each thread has its own.
class LogScope {
 public:
  explicit LogScope(Location operation) : m_outer(current) { current = operation; }
  LogScope(const LogScope&) = delete;
  LogScope& operator=(const LogScope&) = delete;
  ~LogScope() { current = m_outer; }

  /// The operation at work.
  static const char* Name() { return current.function; }

  /// The location of a message: the line where it stands in the operation at work, and where that called the function
  /// that logs the line on which the operation begins. So the line is always one of the function that is told.
  static Location Of(Location message);

 private:
  static inline thread_local Location current{"", 0};

  const Location m_outer;
};

/// Logs the location line of a message that stands there.
void LogLocation(Location message, int level);

}  // namespace kel

/// The line where it stands. In a lambda, whose name is no operation's, the operation's first line is logged.
#define KEL_HERE ::kel::Location(__func__)  // NOLINT(bugprone-lambda-function-name)

/// Logs a message of the operation at work: `KEL_LOG(level, format, ...)`.
#define KEL_LOG(level, ...) \
  (::kel::LogLocation(KEL_HERE, (level)), ::kel::CKELDebug::PrintLog(::kel::kLogChannel, (level), __VA_ARGS__))

/// The line that tells where an operation starts, and the one that marks an error.
#define KEL_LOG_PLACE(file, level)                                                     \
  KEL_LOG(level, "FILE=[%s] FUNCTION=[%s] LINE=[%d]", (file), ::kel::LogScope::Name(), \
          ::kel::LogScope::Of(KEL_HERE).line)
#define KEL_LOG_ERROR(file, level)                                                                   \
  KEL_LOG(level, "\033[2;31;42m !!!!ERROR!!!![%s][%s][%d] \033[0m", (file), ::kel::LogScope::Name(), \
          ::kel::LogScope::Of(KEL_HERE).line)
