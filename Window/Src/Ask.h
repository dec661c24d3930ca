#pragma once

#include <exception>

#include "Log.h"

// Calls to the set, which may throw, and interfaces, which may be missing. A missing interface counts as the call
// having failed; a call that throws fails the operation that makes it, also where a mere failure of that call would
// not.

namespace kel {

inline constexpr const char* kUnknownException = "unknown exception";

/// Logs an exception that was caught in an operation.
inline void LogException(const char* function, const char* what, int level = kFailure) {
  KEL_LOG_AS(function, level, "Exception Handled by %s %s", function, what);
}

/// What `call` answers, or `failed` when it throws. @param function  the operation that calls. @param level  of the
/// line that tells of an exception.
template <typename Call, typename Result>
Result Try(const char* function, Result failed, Call call, int level = kFailure) {
  try {
    return call();
  } catch (const std::exception& exception) {
    LogException(function, exception.what(), level);
  } catch (...) {
    LogException(function, kUnknownException, level);
  }
  return failed;
}

/// Makes a call whose own failure the operation goes on after. @return false when it throws, which ends the operation.
template <typename Call>
bool Reach(const char* function, Call call) {
  return Try(function, false, [&] {
    call();
    return true;
  });
}

/// Result of a failed call where success is a number above 0, or 0.
inline constexpr int kFailed = -1;

/// What `call` answers for an interface; -1 when there is none or the call throws.
template <typename Interface, typename Call>
int Ask(const char* function, Interface* proxy, Call call) {
  if (proxy == nullptr) return kFailed;
  return Try(function, kFailed, [&] { return call(*proxy); });
}

}  // namespace kel
