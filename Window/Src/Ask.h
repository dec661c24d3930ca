#pragma once

#include <exception>

#include "Log.h"

// Calls to the set, which may throw, and interfaces, which may be missing: both count as that call having failed.

namespace kel {

inline constexpr const char* kUnknownException = "unknown exception";

/// Logs an exception that was caught in an operation.
inline void LogException(const char* function, const char* what) {
  KEL_LOG_AS(function, kFailure, "Exception Handled by %s %s", function, what);
}

/// What `call` answers, or `failed` when it throws. @param function  the operation that calls.
template <typename Call, typename Result>
Result Try(const char* function, Result failed, Call call) {
  try {
    return call();
  } catch (const std::exception& exception) {
    LogException(function, exception.what());
  } catch (...) {
    LogException(function, kUnknownException);
  }
  return failed;
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
