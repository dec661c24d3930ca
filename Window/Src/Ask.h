// SPDX-License-Identifier: MIT
#pragma once

#include <exception>

#include "Log.h"

// Calls to the set, which may throw, and interfaces, which may be missing. A call fails when it throws or when its
// interface is missing. Exceptions are logged. An operation that continues after an ordinary failure of a call makes
// the call through `Reach`, so that an exception still ends the operation.

namespace kel {

inline constexpr const char* kUnknownException = "unknown exception";

/// Logs an exception that the operation at work caught.
inline void LogException(const char* what, int level = kFailure) {
  KEL_LOG(level, "Exception Handled by %s %s", LogScope::Name(), what);
}

/// The result of `call`, or `failed` when it throws. @param level  log level for an exception.
template <typename Call, typename Result>
Result Try(Result failed, Call call, int level = kFailure) {
  try {
    return call();
  } catch (const std::exception& exception) {
    LogException(exception.what(), level);
  } catch (...) {
    LogException(kUnknownException, level);
  }
  return failed;
}

/// Makes a call for a caller that continues after an ordinary failure of the call. @return false when the call throws:
/// the caller must then fail.
template <typename Call>
bool Reach(Call call) {
  return Try(false, [&] {
    call();
    return true;
  });
}

/// Result of a failed call. Not for calls whose only failure is 0, since -1 would mean success there.
inline constexpr int kFailed = -1;

/// The result of `call` on an interface; -1 when the interface is missing or the call throws.
template <typename Interface, typename Call>
int Ask(Interface* proxy, Call call) {
  if (proxy == nullptr) return kFailed;
  return Try(kFailed, [&] { return call(*proxy); });
}

}  // namespace kel
