#pragma once

#include <exception>

#include "Log.h"

// Calls to the set, which may throw, and interfaces, which may be missing. A call that throws, or that has no interface
// to go to, has failed; the exception is logged. Where an operation carries on after an ordinary failure of a call it
// makes the call through `Reach`, so that an exception still ends it.

namespace kel {

inline constexpr const char* kUnknownException = "unknown exception";

/// Logs an exception that was caught in an operation.
inline void LogException(Location at, const char* what, int level = kFailure) {
  KEL_LOG_AS(at, level, "Exception Handled by %s %s", at.function, what);
}

/// What `call` answers, or `failed` when it throws. @param at  the operation that calls. @param level  of the line that
/// tells of an exception.
template <typename Call, typename Result>
Result Try(Location at, Result failed, Call call, int level = kFailure) {
  try {
    return call();
  } catch (const std::exception& exception) {
    LogException(at, exception.what(), level);
  } catch (...) {
    LogException(at, kUnknownException, level);
  }
  return failed;
}

/// Makes a call whose ordinary failure its caller carries on after. @return false when it throws: the caller then
/// fails.
template <typename Call>
bool Reach(Location at, Call call) {
  return Try(at, false, [&] {
    call();
    return true;
  });
}

/// Result of a failed call, for all calls but those of which 0 alone is a failure.
inline constexpr int kFailed = -1;

/// What `call` answers for an interface; -1 when there is none or the call throws.
template <typename Interface, typename Call>
int Ask(Location at, Interface* proxy, Call call) {
  if (proxy == nullptr) return kFailed;
  return Try(at, kFailed, [&] { return call(*proxy); });
}

}  // namespace kel
